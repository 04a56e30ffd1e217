#include "support/Media.h"

#include <string_view>

namespace morvelune::testing {

using namespace std::string_literals;

std::string pngBytes() {
  return "\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s;
}
std::string jpegBytes() {
  return "\xFF\xD8\xFF\xE0\0\x10JFIF\0\1\1\0\0\1"s;
}
std::string gifBytes() {
  return "GIF89a\1\0\1\0\0\0\0;;;"s;
}
std::string mp4Bytes() {
  return "\0\0\0\x18"s + "ftypmp42\0\0\0\0"s;
}
std::string unknownBytes() {
  return "0123456789abcdef";
}

}  // namespace morvelune::testing
