#include "platform/PercentCoding.h"

#include <charconv>
#include <cstdint>

#include "morvelune/platform/ASCII.h"

namespace morvelune {

std::string percentEncoded(std::string_view bytes, std::string_view kept) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    if (isASCIILetter(c) || isASCIIDigit(c) || kept.find(c) != std::string_view::npos) {
      text += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      text += {'%', digits[byte / 16], digits[byte % 16]};
    }
  }
  return text;
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      bytes += text[i];
      continue;
    }
    if (text.size() - i < 3) return std::nullopt;
    const char* const digits = text.data() + i + 1;
    std::uint8_t byte = 0;
    if (std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) return std::nullopt;
    bytes += static_cast<char>(byte);
    i += 2;
  }
  return bytes;
}

}  // namespace morvelune
