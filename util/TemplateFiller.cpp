#include "util/TemplateFiller.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>

#include "morvelune/MVLConstants.h"
#include "morvelune/platform/ASCII.h"
#include "util/CommonParameters.h"
#include "util/Tags.h"

namespace morvelune {
namespace {

// The first of its texts with 15, 16 and 17 significant digits that reads back as the same number,
// such as "2.5" or "1e+300". Written and read as the process's locale does, whose decimal point is
// all that differs; std::to_chars, which knows no locale, is missing on older systems of Apple's.
std::string shortestText(double number) {
  using Limits = std::numeric_limits<double>;
  std::array<char, 48> written{};  // 24 characters at most, and however long a decimal point is
  for (int digits = Limits::digits10; digits <= Limits::max_digits10; ++digits) {
    std::snprintf(written.data(), written.size(), "%.*g", digits, number);
    if (std::strtod(written.data(), nullptr) == number) break;
  }
  const std::string_view text = written.data();
  constexpr std::string_view others = "0123456789+-abcdefghijklmnopqrstuvwxyz";  // "inf", too
  const std::size_t point = text.find_first_not_of(others);
  if (point == std::string_view::npos) return std::string(text);
  const std::size_t decimals = text.find_first_of(others, point);
  return std::string(text.substr(0, point)).append(".").append(text.substr(decimals));
}

bool isReadable(const Value& value) {
  using Type = Value::Type;
  const Type type = value.type();
  return type == Type::string || type == Type::boolean || type == Type::integer ||
         type == Type::real;
}

// What a readable value that is no text is inserted as.
std::string numberText(const Value& value) {
  if (const auto flag = value.boolean()) return *flag ? "1" : "0";
  if (auto text = value.visitInteger([](auto number) { return std::to_string(number); })) {
    return *text;
  }
  return shortestText(value.real().value_or(0));
}

// Text in which equal letters are the same, whatever their case. What is ASCII needs no platform.
std::string folded(std::string_view text) {
  if (isASCII(text)) return asciiLowercased(text);
  return Platform::current()->text->caseFolded(text);
}

// What a name's characters are, in one look at each.
struct NameTraits {
  bool isFolded = true;        // ASCII without capitals, which folds to itself
  bool mayHoldTagEnd = false;  // a character that a delimiter begins with
};

NameTraits traitsOf(std::string_view name) {
  NameTraits traits;
  for (const char c : name) {
    traits.isFolded &= static_cast<unsigned char>(c) < 0x80 && asciiLowercased(c) == c;
    for (const std::string_view delimiter : tagDelimiters) {
      traits.mayHoldTagEnd |= c == delimiter[0];
    }
  }
  return traits;
}

// The first bytes of a folded name as a number that sorts like them. ASCII may be in any case.
std::uint64_t beginningOf(std::string_view name) {
  std::uint64_t beginning = 0;
  const std::size_t size = std::min(name.size(), sizeof beginning);
  for (std::size_t i = 0; i < size; ++i) {
    beginning = beginning << 8 | static_cast<unsigned char>(asciiLowercased(name[i]));
  }
  return beginning;  // of shorter names, only those of one length are compared
}

constexpr std::size_t delimiterCount = std::size(tagDelimiters);

// Without regard to the case of ASCII.
bool beginsWith(std::string_view beginning, std::string_view text) {
  return text.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), text.begin(), [](char left, char right) {
           return asciiLowercased(left) == asciiLowercased(right);
         });
}

bool holdsBar(std::string_view text) {
  return text.find(tagDelimiters[0]) != std::string_view::npos;
}

// How many bytes of an encoded delimiter the text ends with, when not with a whole one.
std::size_t begunAtEnd(std::string_view text) {
  std::size_t count = tagDelimiters[1].size() - 1;
  while (!text.ends_with(tagDelimiters[1].substr(0, count))) --count;
  return count;
}

// Where the delimiter stands; the text's end when it does not.
std::size_t placeOf(std::string_view delimiter, std::string_view text) {
  for (std::size_t at = 0; (at = text.find(delimiter[0], at)) != std::string_view::npos; ++at) {
    if (beginsWith(delimiter.substr(1), text.substr(at + 1))) return at;
  }
  return text.size();
}

}  // namespace

TemplateFiller::TemplateFiller(const Dictionary& parameters) : parameters_(parameters) {
  named_.reserve(parameters_.size());
  for (const Dictionary::Entry& entry : parameters_) {
    if (!isReadable(entry.value)) continue;
    std::string_view name = entry.key;
    const NameTraits traits = traitsOf(name);
    if (!traits.isFolded) name = foldedKeys_.emplace_back(folded(name));
    named_.push_back({beginningOf(name), name, &entry});
    for (std::size_t kind = 0; traits.mayHoldTagEnd && kind < delimiterCount; ++kind) {
      if (name.find(tagDelimiters[kind]) == std::string_view::npos) continue;
      lengthsAcross_.resize(delimiterCount);
      lengthsAcross_[kind].push_back(name.size());
    }
  }
  const auto isLess = [](const Named& left, const Named& right) {
    const int names = compare(left, right.beginning, right.folded);
    return names != 0 ? names < 0 : left.entry < right.entry;
  };
  if (!std::is_sorted(named_.begin(), named_.end(), isLess)) {
    std::sort(named_.begin(), named_.end(), isLess);
  }
  for (auto& lengths : lengthsAcross_) {
    std::sort(lengths.begin(), lengths.end());
    lengths.erase(std::unique(lengths.begin(), lengths.end()), lengths.end());
  }
}

int TemplateFiller::compare(const Named& left, std::uint64_t beginning, std::string_view name) {
  if (left.folded.size() != name.size()) return left.folded.size() < name.size() ? -1 : 1;
  if (left.beginning != beginning) return left.beginning < beginning ? -1 : 1;
  for (std::size_t i = sizeof beginning; i < name.size(); ++i) {
    const auto mine = static_cast<unsigned char>(left.folded[i]);
    const auto other = static_cast<unsigned char>(asciiLowercased(name[i]));
    if (mine != other) return mine < other ? -1 : 1;
  }
  return 0;
}

// One filling. While all is ASCII, names are folded where they are looked up. From the first other
// text on, what was read is kept twice, as it stands and folded. Both have the same delimiters, so
// that a tag's place in one is known in the other.
class TemplateFiller::Filling {
 public:
  Filling(const TemplateFiller& filler, bool allParamsRequired)
      : filler_(filler), allParamsRequired_(allParamsRequired), visited_(filler.named_.size()) {}

  std::optional<std::string> run(std::string_view url) {
    inputs_.push_back({url, {}});
    if (!isASCII(url)) keepFolded();
    plain_.reserve(url.size());
    for (kinds_ = 1; true; ++kinds_) {
      if (!readAll()) return std::nullopt;
      if (kinds_ == delimiterCount || placeOf(tagDelimiters[kinds_], plain_) == plain_.size()) {
        return std::move(plain_);
      }
      const std::string& plain = texts_.emplace_back(std::exchange(plain_, ""));
      inputs_.push_back({plain, texts_.emplace_back(std::exchange(folded_, "")), !isFolding_});
      for (auto& open : open_) open.clear();
    }
  }

 private:
  // A place in what was read; `folded` is 0 while that is not kept.
  struct Place {
    std::size_t plain;
    std::size_t folded;
  };

  // Text that is still to be read.
  struct Input {
    std::string_view plain;
    std::string_view folded;  // while that is kept
    bool isAligned = true;    // no character has another place when folded
  };

  struct Delimiter {
    std::size_t at;  // the text's end when there is none
    std::size_t kind = delimiterCount;
  };

  // One of the two, or neither.
  struct Parameter {
    const Value* given = nullptr;
    const CommonParameter* common = nullptr;
    explicit operator bool() const { return given != nullptr || common != nullptr; }
  };

  // Later inputs stand before the rest of earlier ones. False when a parameter without a value is
  // required.
  bool readAll() {
    while (!inputs_.empty()) {
      Input& input = inputs_.back();
      const Delimiter next = nextIn(input.plain);
      const bool isSame = input.isAligned || !isFolding_;
      take(input, next.at, isSame ? next.at : nextIn(input.folded).at);
      if (next.kind == delimiterCount) {
        inputs_.pop_back();
        continue;
      }
      const std::size_t size = tagDelimiters[next.kind].size();
      Parameter parameter = takeBackTag(next.kind);
      if (parameter) {
        skip(input, size);
      } else if (!(parameter = skipTag(input, next.kind))) {
        open_[next.kind].push_back({plain_.size(), folded_.size()});
        take(input, size, size);
      }
      if (parameter && !insert(parameter)) return false;
    }
    return true;
  }

  void skip(Input& input, std::size_t size) const {
    input.plain.remove_prefix(size);
    if (isFolding_) input.folded.remove_prefix(size);
  }

  void take(Input& input, std::size_t plain, std::size_t folded) {
    plain_ += input.plain.substr(0, plain);
    input.plain.remove_prefix(plain);
    if (!isFolding_) return;
    folded_ += input.folded.substr(0, folded);
    input.folded.remove_prefix(folded);
  }

  // The first delimiter of the kinds that are read.
  [[nodiscard]] Delimiter nextIn(std::string_view text) const {
    if (kinds_ == 1) {
      static_assert(tagDelimiters[0].size() == 1);
      const std::size_t at = text.find(tagDelimiters[0][0]);
      return at == std::string_view::npos ? Delimiter{text.size()} : Delimiter{at, 0};
    }
    for (std::size_t at = 0; at < text.size(); ++at) {
      for (std::size_t kind = 0; kind < kinds_; ++kind) {
        if (beginsWith(tagDelimiters[kind], text.substr(at))) return {at, kind};
      }
    }
    return {text.size()};
  }

  // The parameter, not visited yet, whose tag a delimiter of this kind would close here. What was
  // read of the tag is taken back.
  Parameter takeBackTag(std::size_t kind) {
    const auto& open = open_[kind];
    if (open.empty()) return {};
    if (const Parameter parameter = takeBackTag(open.back(), kind)) return parameter;
    if (filler_.lengthsAcross_.empty()) return {};
    const std::size_t end = read().size() - tagDelimiters[kind].size();
    for (const std::size_t length : filler_.lengthsAcross_[kind]) {
      if (length > end) break;
      const std::size_t at = end - length;
      if (read()[at] != tagDelimiters[kind][0]) continue;
      const auto isBefore = [this](const Place& place, std::size_t i) { return inRead(place) < i; };
      const auto place = std::lower_bound(open.begin(), open.end(), at, isBefore);
      if (place == open.end() || inRead(*place) != at) continue;
      if (const Parameter parameter = takeBackTag(*place, kind)) return parameter;
    }
    return {};
  }

  // The same for a tag that opens there.
  Parameter takeBackTag(Place opening, std::size_t kind) {
    const std::size_t begin = inRead(opening) + tagDelimiters[kind].size();
    const Parameter parameter = visit(read().substr(begin));
    if (!parameter) return {};
    plain_.resize(opening.plain);
    folded_.resize(opening.folded);
    for (auto& open : open_) {
      while (!open.empty() && open.back().plain >= plain_.size()) open.pop_back();
    }
    return parameter;
  }

  // The parameter whose tag the input begins with, up to its next delimiter; skips the tag. Finds
  // nothing that would not be found later, but nearly all of it sooner.
  Parameter skipTag(Input& input, std::size_t kind) {
    if (isFolding_) return {};
    const std::size_t size = tagDelimiters[kind].size();
    const std::string_view rest = input.plain.substr(size);
    const Delimiter close = nextIn(rest);
    if (close.kind != kind) return {};
    const Parameter parameter = visit(rest.substr(0, close.at));
    if (parameter) skip(input, size + close.at + size);
    return parameter;
  }

  // The next parameter of the name; none when there is none any more.
  Parameter visit(std::string_view name) {
    if (const Value* given = visitGiven(name)) return {given, nullptr};
    return {nullptr, visitCommon(name)};
  }

  // What names are looked for in.
  [[nodiscard]] std::string_view read() const { return isFolding_ ? folded_ : plain_; }
  [[nodiscard]] std::size_t inRead(const Place& place) const {
    return isFolding_ ? place.folded : place.plain;
  }

  const Value* visitGiven(std::string_view name) {
    const auto& named = filler_.named_;
    const std::uint64_t beginning = beginningOf(name);
    const auto isLess = [beginning](const Named& left, std::string_view right) {
      return compare(left, beginning, right) < 0;
    };
    const auto first = std::lower_bound(named.begin(), named.end(), name, isLess);
    if (first == named.end()) return nullptr;
    std::uint32_t& visited = visited_[first - named.begin()];
    if (named.end() - first <= visited) return nullptr;
    if (compare(first[visited], beginning, name) != 0) return nullptr;
    return &first[visited++].entry->value;
  }

  const CommonParameter* visitCommon(std::string_view name) {
    const auto all = commonParameters();
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (name.size() != all[i].key.size() || !beginsWith(all[i].key, name)) continue;
      if ((visitedCommon_ >> i & 1) != 0 || filler_.isGiven(all[i].key)) return nullptr;
      visitedCommon_ |= 1U << i;
      return &all[i];
    }
    return nullptr;
  }

  // False when the parameter has no value and one is required.
  bool insert(const Parameter& parameter) {
    if (parameter.common != nullptr) {
      insert(texts_.emplace_back(parameter.common->read(*Platform::current())));
    } else if (const auto text = parameter.given->stringView(); !text) {
      insert(texts_.emplace_back(numberText(*parameter.given)));
    } else if (*text != kMVLNullValue) {
      insert(*text);
    } else if (allParamsRequired_) {
      return false;
    } else {
      insert("");
    }
    return true;
  }

  // A value may hold delimiters, so it is read like the template. What is viewed must stay. Among
  // encoded tags, it may let a plain one stand further on, which goes first: then all plain ones
  // are filled before encoded ones are read again.
  void insert(std::string_view value) {
    if (kinds_ > 1) {
      if (filler_.doNamesHoldBar() || holdsBar(value)) {
        kinds_ = 1;
      } else {
        value = joined(value);
      }
    }
    const bool isASCIIToo = isASCII(value);
    if (!isFolding_ && isASCIIToo && nextIn(value).kind == delimiterCount) {
      plain_ += value;
      return;
    }
    if (!isFolding_ && !isASCIIToo) keepFolded();
    inputs_.push_back({value, {}, isASCIIToo});
    if (isFolding_) inputs_.back().folded = texts_.emplace_back(folded(value));
  }

  // The value with what surrounds it, as far as they form a delimiter together. That is taken out
  // of what was read and of what is still to be read.
  std::string_view joined(std::string_view value) {
    const std::size_t before = begunAtEnd(plain_);
    if (before == 0 && begunAtEnd(value) == 0) return value;
    std::string text = plain_.substr(plain_.size() - before).append(value);
    plain_.resize(plain_.size() - before);
    if (isFolding_) folded_.resize(folded_.size() - before);
    const std::string_view missing = tagDelimiters[1].substr(begunAtEnd(text));
    const std::size_t end = text.size();
    for (auto input = inputs_.rbegin(); input != inputs_.rend(); ++input) {
      text += input->plain.substr(0, end + missing.size() - text.size());
      if (text.size() == end + missing.size()) break;
    }
    const bool isWhole = beginsWith(missing, std::string_view(text).substr(end));
    if (!isWhole) text.resize(end);
    for (std::size_t left = isWhole ? missing.size() : 0; left > 0; --left) {
      while (inputs_.back().plain.empty()) inputs_.pop_back();
      skip(inputs_.back(), 1);
    }
    return texts_.emplace_back(std::move(text));
  }

  // From here on, with all that has been ASCII so far, or is the template.
  void keepFolded() {
    isFolding_ = true;
    folded_ = asciiLowercased(plain_);
    for (auto& open : open_) {
      for (Place& place : open) place.folded = place.plain;
    }
    for (Input& input : inputs_) {
      input.isAligned = isASCII(input.plain);
      input.folded = texts_.emplace_back(folded(input.plain));
    }
  }

  const TemplateFiller& filler_;
  const bool allParamsRequired_;
  std::size_t kinds_ = 1;  // of delimiters that are read: the first ones
  std::string plain_;      // what was read, filled
  bool isFolding_ = false;
  std::string folded_;  // the same
  std::vector<Input> inputs_;
  std::list<std::string> texts_;                         // that are viewed
  std::array<std::vector<Place>, delimiterCount> open_;  // that may open a tag, ascending
  std::vector<std::uint32_t> visited_;  // how many, at the first parameter of each name
  std::uint32_t visitedCommon_ = 0;     // a bit for each
};

std::optional<std::string> TemplateFiller::filled(std::string_view url,
                                                  bool allParamsRequired) const {
  return Filling(*this, allParamsRequired).run(url);
}

std::size_t TemplateFiller::looksPerByte() const {
  std::size_t looks = 1;
  for (const auto& lengths : lengthsAcross_) {
    for (const std::size_t length : lengths) looks += 1 + length;
  }
  const auto isReadAgain = [this](const Named& named) {
    return doNamesHoldBar() || holdsBar(named.entry->value.stringView().value_or(""));
  };
  return looks * (1 + std::count_if(named_.begin(), named_.end(), isReadAgain));
}

bool TemplateFiller::doNamesHoldBar() const {
  return !lengthsAcross_.empty() && !lengthsAcross_[0].empty();
}

bool TemplateFiller::isGiven(std::string_view key) const {
  const auto less = [](const Dictionary::Entry& left, std::string_view right) {
    return left.key < right;
  };
  const auto* found = std::lower_bound(parameters_.begin(), parameters_.end(), key, less);
  return found != parameters_.end() && found->key == key && isReadable(found->value);
}

}  // namespace morvelune
