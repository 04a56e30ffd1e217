// Letters and digits of ASCII, by rules that no locale changes, unlike those of tolower() and
// isalpha().
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace morvelune {

[[nodiscard]] constexpr bool isASCIIDigit(char c) {
  return c >= '0' && c <= '9';
}

[[nodiscard]] constexpr bool isASCIILetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// 'A' to 'Z' in lower case, anything else as it is.
[[nodiscard]] constexpr char asciiLowercased(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// 'a' to 'z' in upper case, anything else as it is.
[[nodiscard]] constexpr char asciiUppercased(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

[[nodiscard]] inline bool isASCII(std::string_view text) {
  unsigned char all = 0;  // looks at several at once, where an early end would look at each
  for (const char c : text) all |= static_cast<unsigned char>(c);
  return all < 0x80;
}

[[nodiscard]] inline std::string asciiLowercased(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char c) { return asciiLowercased(c); });
  return result;
}

[[nodiscard]] inline std::string asciiUppercased(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char c) { return asciiUppercased(c); });
  return result;
}

}  // namespace morvelune
