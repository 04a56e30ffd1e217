// Leading bytes of media files, sixteen of each, which is what it takes to be recognised.
#pragma once

#include <string>

namespace morvelune::testing {

inline std::string pngBytes() {
  return {"\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16};
}
inline std::string jpegBytes() {
  return {"\xFF\xD8\xFF\xE0\0\x10JFIF\0\1\1\0\0\1", 16};
}
inline std::string gifBytes() {
  return {"GIF89a\1\0\1\0\0\0\0;;;", 16};
}
inline std::string mp4Bytes() {
  return {
      "\0\0\0\x18"
      "ftypmp42\0\0\0\0",
      16};
}

}  // namespace morvelune::testing
