#include "tools/morvelune/Progress.h"

#include <unistd.h>

#include <iomanip>
#include <iostream>

namespace morvelune::tool {

Progress::Progress() : isTerminal_(isatty(STDERR_FILENO) != 0) {}

void Progress::show(std::size_t count) {
  constexpr std::chrono::milliseconds interval{200};
  const auto now = Clock::now();
  if (!isTerminal_ || count == 0 || (isShown_ && now - shownAt_ < interval)) return;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  std::cerr << '\r' << count << " payloads, " << std::fixed << std::setprecision(0)
            << static_cast<double>(count) / seconds << " a second\x1B[K" << std::flush;
  isShown_ = true;
  shownAt_ = now;
}

void Progress::clear() {
  if (isShown_) std::cerr << "\r\x1B[K" << std::flush;
  isShown_ = false;
}

}  // namespace morvelune::tool
