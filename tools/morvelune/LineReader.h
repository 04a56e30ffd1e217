// LineReader: reads the lines of a descriptor in constant memory, whatever their length.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace morvelune::tool {

class LineReader {
 public:
  // A line longer than `maximumLength` bytes is cut to one byte more than that, so that it can be
  // recognised. `beforeReading` is called before each read, which may wait.
  LineReader(int descriptor, std::size_t maximumLength, std::function<void()> beforeReading);

  // Puts the next line, without its line feed, in place of what `line` holds; false at the end.
  // The last line needs no line feed. Throws std::system_error when reading fails.
  [[nodiscard]] bool next(std::string& line);

 private:
  [[nodiscard]] bool fill();

  const int descriptor_;
  const std::size_t maximumLength_;
  const std::function<void()> beforeReading_;
  std::array<char, 1 << 16> buffer_;
  std::string_view rest_;  // what of the buffer has not been taken
};

}  // namespace morvelune::tool
