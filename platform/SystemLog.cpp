#include "morvelune/platform/SystemLog.h"

#include <array>
#include <cstdio>

namespace morvelune {
namespace {

std::string escape(unsigned codePoint) {
  switch (codePoint) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "\\u%04X", codePoint & 0xFFFFU);
  return text.data();
}

// The control character or line separator that `text` begins with and its length in bytes; a
// length of 0 when it begins with neither. C1 controls and U+2028, U+2029 are read in UTF-8.
struct Control {
  unsigned codePoint = 0;
  std::size_t length = 0;
};

Control leadingControl(std::string_view text) {
  const auto byte = [text](std::size_t i) -> unsigned {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  if (byte(0) < 0x20 || byte(0) == 0x7F) return {byte(0), 1};
  if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0) return {byte(1), 2};
  if (byte(0) == 0xE2 && byte(1) == 0x80 && (byte(2) == 0xA8 || byte(2) == 0xA9)) {
    return {0x2028 + byte(2) - 0xA8, 3};
  }
  return {};
}

void appendEscaped(std::string& line, std::string_view value) {
  while (!value.empty()) {
    const Control control = leadingControl(value);
    if (control.length > 0) {
      line += escape(control.codePoint);
      value.remove_prefix(control.length);
    } else {
      line += value.front();
      value.remove_prefix(1);
    }
  }
}

}  // namespace

void SystemLog::log(std::string_view format,
                    std::initializer_list<std::optional<std::string_view>> values) {
  constexpr std::string_view placeholder = "%@";
  std::string line;
  for (const auto& value : values) {
    const std::size_t at = format.find(placeholder);
    if (at == std::string_view::npos) break;
    line += format.substr(0, at);
    appendEscaped(line, value.value_or("(null)"));
    format.remove_prefix(at + placeholder.size());
  }
  line += format;
  writeLine(line);
}

}  // namespace morvelune
