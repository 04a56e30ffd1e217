#include "platform/Printable.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace morvelune {
namespace {

// A code point and its length in bytes; a length of 0 stands for a byte that begins none.
struct CodePoint {
  unsigned value = 0;
  std::size_t length = 0;
};

// RFC 3629: no sequence longer than need be, no surrogate, nothing above U+10FFFF.
CodePoint leadingCodePoint(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return {first, 1};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return {};
  unsigned value = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return {};
    value = value << 6 | (byte & 0x3FU);
  }
  constexpr std::array<unsigned, 5> least{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = value >= 0xD800 && value < 0xE000;
  if (value < least[length] || value > 0x10FFFF || isSurrogate) return {};
  return {value, length};
}

bool isJoiner(unsigned codePoint) {
  return codePoint == 0x200C || codePoint == 0x200D;
}

bool acts(unsigned codePoint) {
  const auto isIn = [codePoint](unsigned first, unsigned last) {
    return codePoint >= first && codePoint <= last;
  };
  return codePoint < 0x20 || isIn(0x7F, 0x9F) || codePoint == 0x061C || isIn(0x200E, 0x200F) ||
         codePoint == 0x200B || isIn(0x2028, 0x202E) || isIn(0x2060, 0x2064) ||
         isIn(0x2066, 0x206F) || codePoint == 0xFEFF || isIn(0xE0000, 0xE007F);
}

std::string escaped(const char* format, unsigned value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

std::string escaped(unsigned codePoint) {
  switch (codePoint) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      if (codePoint < 0x10000) return escaped("\\u%04X", codePoint);
      return escaped("\\u%04X", 0xD7C0 + (codePoint >> 10)) +  // UTF-16, as in JSON
             escaped("\\u%04X", 0xDC00 + (codePoint & 0x3FF));
  }
}

bool isASCII(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

std::string withEscapes(std::string_view text, bool areControlsKept) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto [codePoint, length] = leadingCodePoint(text.substr(at));
    const std::size_t end = at + (length == 0 ? 1 : length);
    const bool isAlone =
        at == 0 || end == text.size() || isASCII(text[at - 1]) || isASCII(text[end]);
    if (length == 0) {
      result += escaped("\\x%02X", static_cast<unsigned char>(text[at]));
    } else if ((acts(codePoint) && !(areControlsKept && codePoint < 0x20)) ||
               (isJoiner(codePoint) && isAlone)) {
      result += escaped(codePoint);
    } else {
      result += text.substr(at, length);
    }
    at = end;
  }
  return result;
}

}  // namespace

std::string printable(std::string_view text) {
  return withEscapes(text, false);
}

std::string printableJson(std::string_view json) {
  return withEscapes(json, true);
}

}  // namespace morvelune
