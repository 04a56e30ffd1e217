// Progress: a line on standard error that says how far a long run has come.
#pragma once

#include <chrono>
#include <cstddef>

namespace morvelune::tool {

// Does nothing unless standard error is a terminal.
class Progress {
 public:
  Progress();
  ~Progress() { clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Shows the count and its rate; a few times a second however often it is called.
  void show(std::size_t count);
  // Takes the line away; the next show() puts it back at once.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  const bool isTerminal_;
  const Clock::time_point start_ = Clock::now();
  bool isShown_ = false;
  Clock::time_point shownAt_;
};

}  // namespace morvelune::tool
