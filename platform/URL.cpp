#include "morvelune/platform/URL.h"

#include <algorithm>

#include "morvelune/platform/ASCII.h"
#include "platform/PercentCoding.h"

namespace morvelune {
namespace {

// What may stand in a URL as it is, '%' included.
bool isURLCharacter(char c) {
  constexpr std::string_view excluded = "\"<>\\^`{|}";
  return c > 0x20 && c < 0x7F && excluded.find(c) == std::string_view::npos;
}

// RFC 2396, 3.1: a letter, then letters, digits, "+", "-" and "."; then ":".
std::size_t schemeLength(std::string_view text) {
  const std::size_t colon = text.find_first_of(":/?#");
  if (colon == std::string_view::npos || colon == 0 || text[colon] != ':') return 0;
  const std::string_view scheme = text.substr(0, colon);
  const bool wellFormed =
      isASCIILetter(scheme[0]) && std::all_of(scheme.begin(), scheme.end(), [](char c) {
        return isASCIILetter(c) || isASCIIDigit(c) || c == '+' || c == '-' || c == '.';
      });
  return wellFormed ? colon : 0;
}

}  // namespace

std::optional<URL> URL::parseRFC2396(std::string_view text) {
  if (!std::all_of(text.begin(), text.end(), isURLCharacter)) return std::nullopt;
  if (std::count(text.begin(), text.end(), '#') > 1) return std::nullopt;
  if (!percentDecoded(text)) return std::nullopt;
  return URL(std::string(text));
}

URL URL::fileURL(std::string_view path) {
  // RFC 2396 "unreserved", and what a path may hold beside it.
  return URL("file://" + percentEncoded(path, "-_.!~*'()/:@&=+$,"));
}

std::string URL::scheme() const {
  return asciiLowercased(std::string_view(text_).substr(0, schemeLength(text_)));
}

std::string URL::path() const {
  std::string_view rest = text_;
  if (const std::size_t length = schemeLength(rest)) rest.remove_prefix(length + 1);
  rest = rest.substr(0, rest.find_first_of("?#"));
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    rest = rest.substr(std::min(rest.find('/'), rest.size()));
  }
  return percentDecoded(rest).value_or(std::string(rest));
}

}  // namespace morvelune
