// SystemLog: the platform's general log.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "morvelune/platform/Export.h"

namespace morvelune {

// Callable from any thread.
class MORVELUNE_API SystemLog {
 public:
  virtual ~SystemLog() = default;

  // Writes one line: `format` with each "%@" replaced by the next value. An absent value prints as
  // "(null)". Values without a place are dropped; places without a value stay. In values,
  // control characters, line separators, characters that turn the direction of writing and bytes
  // that are no UTF-8 are written escaped ("\n", "\u001B", "\u202E", "\x9B"), so that what a
  // payload or a server says cannot forge a line, nor act on a terminal.
  void log(std::string_view format, std::initializer_list<std::optional<std::string_view>> values);

  // Writes a finished line, which holds no line break, in one piece.
  virtual void writeLine(const std::string& line) = 0;
};

}  // namespace morvelune
