// For tests that wait for what another thread or process does.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace morvelune::testing {

// Waits until it holds, ten seconds at most, and tells whether it does.
inline bool eventually(const std::function<bool()>& holds) {
  for (int i = 0; i < 2000 && !holds(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return holds();
}

}  // namespace morvelune::testing
