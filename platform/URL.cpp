#include "morvelune/platform/URL.h"

#include <algorithm>
#include <cctype>

namespace morvelune {
namespace {

constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view hexDigits = "0123456789ABCDEFabcdef";

bool isHexDigit(char c) {
  return hexDigits.find(c) != std::string_view::npos;
}

// What may stand in a URL as it is, '%' included.
bool isURLCharacter(char c) {
  constexpr std::string_view excluded = "\"<>\\^`{|}";
  return c > 0x20 && c < 0x7F && excluded.find(c) == std::string_view::npos;
}

// What fileURL() leaves as it is: RFC 2396 "unreserved", and what a path may hold beside it.
bool isPathCharacter(char c) {
  constexpr std::string_view others = "0123456789-_.!~*'()/:@&=+$,";
  return letters.find(c) != std::string_view::npos || others.find(c) != std::string_view::npos;
}

int hexValue(char c) {
  if (c <= '9') return c - '0';
  return (c | 0x20) - 'a' + 10;
}

std::string decoded(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%') {
      result += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
      i += 2;
    } else {
      result += text[i];
    }
  }
  return result;
}

// RFC 2396, 3.1: a letter, then letters, digits, "+", "-" and "."; then ":".
std::size_t schemeLength(std::string_view text) {
  const std::size_t colon = text.find_first_of(":/?#");
  if (colon == std::string_view::npos || colon == 0 || text[colon] != ':') return 0;
  const std::string_view scheme = text.substr(0, colon);
  const bool wellFormed = letters.find(scheme[0]) != std::string_view::npos &&
                          std::all_of(scheme.begin(), scheme.end(), [](char c) {
                            return letters.find(c) != std::string_view::npos ||
                                   (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
                          });
  return wellFormed ? colon : 0;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (!std::all_of(text.begin(), text.end(), isURLCharacter)) return std::nullopt;
  if (std::count(text.begin(), text.end(), '#') > 1) return std::nullopt;
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    if (at + 2 >= text.size() || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2])) {
      return std::nullopt;
    }
  }
  return URL(std::string(text));
}

URL URL::fileURL(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text = "file://";
  for (const char c : path) {
    if (isPathCharacter(c)) {
      text += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      text += {'%', digits[byte / 16], digits[byte % 16]};
    }
  }
  return URL(std::move(text));
}

std::string URL::scheme() const {
  std::string scheme = text_.substr(0, schemeLength(text_));
  std::transform(scheme.begin(), scheme.end(), scheme.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return scheme;
}

std::string URL::path() const {
  std::string_view rest = text_;
  if (const std::size_t length = schemeLength(rest)) rest.remove_prefix(length + 1);
  rest = rest.substr(0, rest.find_first_of("?#"));
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    rest = rest.substr(std::min(rest.find('/'), rest.size()));
  }
  return decoded(rest);
}

}  // namespace morvelune
