#include "tools/morvelune/LineReader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace morvelune::tool {

LineReader::LineReader(int descriptor, std::size_t maximumLength,
                       std::function<void()> beforeReading)
    : descriptor_(descriptor),
      maximumLength_(maximumLength),
      beforeReading_(std::move(beforeReading)) {}

bool LineReader::next(std::string& line) {
  line.clear();
  if (rest_.empty() && !fill()) return false;
  do {
    const std::size_t end = rest_.find('\n');
    const std::string_view part = rest_.substr(0, end);
    line += part.substr(0, maximumLength_ + 1 - line.size());
    rest_.remove_prefix(std::min(end, rest_.size() - 1) + 1);
    if (end != std::string_view::npos) break;
  } while (fill());
  return true;
}

bool LineReader::fill() {
  beforeReading_();
  ssize_t size = -1;
  do {
    size = read(descriptor_, buffer_.data(), buffer_.size());
  } while (size < 0 && errno == EINTR);
  if (size < 0) throw std::system_error(errno, std::generic_category(), "standard input");
  rest_ = {buffer_.data(), static_cast<std::size_t>(size)};
  return size > 0;
}

}  // namespace morvelune::tool
