// Reading UTF-8.
#pragma once

#include <unicode/utf8.h>

#include <cstdint>
#include <string_view>

namespace morvelune {

// Reads the code point at `index` and moves `index` behind it; negative for a bad sequence.
inline UChar32 nextCodePoint(std::string_view text, std::int32_t& index) {
  UChar32 codePoint = 0;
  U8_NEXT(text.data(), index, static_cast<std::int32_t>(text.size()), codePoint);
  return codePoint;
}

inline bool isUTF8(std::string_view text) {
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(text.size());) {
    if (nextCodePoint(text, i) < 0) return false;
  }
  return true;
}

}  // namespace morvelune
