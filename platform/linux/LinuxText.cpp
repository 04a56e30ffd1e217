#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/edits.h>
#include <unicode/locid.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <limits>
#include <new>
#include <vector>

#include "morvelune/platform/ASCII.h"
#include "platform/PercentCoding.h"
#include "platform/linux/LinuxServices.h"
#include "platform/linux/UTF8.h"

namespace morvelune {
namespace {

// In ICU's units of about a millisecond: bounds how long an expression holds a thread.
constexpr std::int32_t regexTimeLimit = 1000;

constexpr std::string_view queryPunctuation = "!$&'()*+,-./:;=?@_~";
constexpr std::string_view unreservedPunctuation = "-._~";

icu::UnicodeString utf16(std::string_view text) {
  return icu::UnicodeString::fromUTF8(text);
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

// With U+FFFD in the place of bad sequences.
std::string repaired(std::string_view text) {
  return utf8(utf16(text));
}

// Calls `found` with the place of each occurrence, overlapping ones too, until it gives true. The
// algorithm is that of Knuth, Morris and Pratt: whatever the two say, no character is looked at
// more than twice.
template <typename Found>
void eachOccurrence(std::string_view pattern, std::string_view text, Found found) {
  std::vector<std::size_t> borders(pattern.size() + 1);  // of each beginning: its longest one
  std::size_t border = 0;
  for (std::size_t i = 1; i < pattern.size(); borders[++i] = border) {
    while (border > 0 && pattern[i] != pattern[border]) border = borders[border];
    if (pattern[i] == pattern[border]) ++border;
  }
  std::size_t matched = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    while (matched > 0 && (matched == pattern.size() || text[i] != pattern[matched])) {
      matched = borders[matched];
    }
    if (text[i] == pattern[matched]) ++matched;
    if (matched == pattern.size() && found(i + 1 - matched)) return;
  }
}

// Text in lower case, with the changes that made it from the original. Every sigma is the same
// letter, because which of its two forms stands in a word depends on what is beside it.
class Lowercased {
 public:
  explicit Lowercased(std::string_view original) : originalSize_(original.size()) {
    icu::Edits repairs;
    icu::Edits caseChanges;
    const std::string repaired = repair(original, repairs);
    UErrorCode status = U_ZERO_ERROR;
    icu::StringByteSink<std::string> sink(&text_);
    icu::CaseMap::utf8ToLower("", 0, repaired, sink, &caseChanges, status);
    edits_.mergeAndAppend(repairs, caseChanges, status);
    if (U_FAILURE(status)) throw std::bad_alloc();  // all that can go wrong
    unifySigmas();
  }

  [[nodiscard]] const std::string& text() const { return text_; }

  // The first occurrence, as a range of the original. One that begins or ends within a character
  // of the original is none.
  [[nodiscard]] NSRange find(std::string_view pattern) const {
    auto begins = edits_.getFineIterator();
    auto ends = edits_.getFineIterator();
    NSRange range;
    eachOccurrence(pattern, text_, [&](std::size_t at) {
      const auto begin = originalIndex(begins, at);
      const auto end = originalIndex(ends, at + pattern.size());
      if (begin && end) range = {*begin, *end - *begin};
      return range.location != NSNotFound;
    });
    return range;
  }

 private:
  void unifySigmas() {
    constexpr std::string_view sigma = "\u03C3";
    constexpr std::string_view finalSigma = "\u03C2";  // as many bytes
    for (std::size_t at = 0; (at = text_.find(finalSigma, at)) != std::string::npos;) {
      text_.replace(at, finalSigma.size(), sigma);
    }
  }

  // ICU's case mapping lets bad sequences stand as they are.
  static std::string repair(std::string_view text, icu::Edits& repairs) {
    constexpr std::string_view replacement = "\uFFFD";
    std::string repaired;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(text.size());) {
      const std::int32_t start = i;
      if (nextCodePoint(text, i) >= 0) {
        repairs.addUnchanged(i - start);
        repaired += text.substr(start, i - start);
      } else {
        repairs.addReplace(i - start, replacement.size());
        repaired += replacement;
      }
    }
    return repaired;
  }

  [[nodiscard]] std::optional<std::size_t> originalIndex(icu::Edits::Iterator& changes,
                                                         std::size_t index) const {
    if (index == text_.size()) return originalSize_;
    UErrorCode status = U_ZERO_ERROR;
    changes.findDestinationIndex(static_cast<std::int32_t>(index), status);
    const std::size_t offset = index - changes.destinationIndex();
    if (offset > 0 && changes.hasChange()) return std::nullopt;
    return changes.sourceIndex() + offset;
  }

  std::size_t originalSize_;
  std::string text_;
  icu::Edits edits_;
};

std::string_view withoutLeadingSpace(std::string_view text) {
  std::int32_t start = 0;
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(text.size()); start = i) {
    if (!u_isUWhiteSpace(nextCodePoint(text, i))) break;
  }
  return text.substr(start);
}

class LinuxText : public Text {
 public:
  [[nodiscard]] NSRange rangeIgnoringCase(std::string_view pattern,
                                          std::string_view text) const override {
    if (pattern.empty()) return {};
    if (!isASCII(pattern) || !isASCII(text)) {
      return Lowercased(text).find(Lowercased(pattern).text());
    }
    NSRange range;
    eachOccurrence(asciiLowercased(pattern), asciiLowercased(text), [&](std::size_t at) {
      range = {at, pattern.size()};
      return true;
    });
    return range;
  }

  [[nodiscard]] std::string caseFolded(std::string_view text) const override {
    return Lowercased(text).text();
  }

  [[nodiscard]] bool matches(std::string_view text, std::string_view expression) const override {
    const icu::UnicodeString input = utf16(text);
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(utf16(expression), input, 0, status);
    matcher.setTimeLimit(regexTimeLimit, status);
    return matcher.matches(status) && U_SUCCESS(status);
  }

  [[nodiscard]] double doubleValue(std::string_view text) const override {
    text = withoutLeadingSpace(text);
    // Of these alone no hexadecimal number, "inf" or "nan" can be made.
    const std::string number(text.substr(0, text.find_first_not_of("0123456789+-.eE")));
    static const locale_t classic = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return ::strtod_l(number.c_str(), nullptr, classic);
  }

  [[nodiscard]] std::string fixedNotation(double number) const override {
    constexpr int decimals = 6;
    // The longest number: max_exponent10 + 1 digits, a sign, the point and the decimals.
    std::array<char, std::numeric_limits<double>::max_exponent10 + 3 + decimals> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number,
                                   std::chars_format::fixed, decimals);
    return {text.data(), end.ptr};
  }

  [[nodiscard]] std::string addingPercentEncodingForQuery(std::string_view text) const override {
    return percentEncoded(repaired(text), queryPunctuation);
  }

  [[nodiscard]] std::string addingPercentEscapes(std::string_view text) const override {
    return percentEncoded(repaired(text), unreservedPunctuation);
  }

  [[nodiscard]] std::optional<std::string> removingPercentEncoding(
      std::string_view text) const override {
    auto bytes = percentDecoded(text);
    return bytes && isUTF8(*bytes) ? bytes : std::nullopt;
  }
};

}  // namespace

std::shared_ptr<Text> makeLinuxText() {
  return std::make_shared<LinuxText>();
}

}  // namespace morvelune
