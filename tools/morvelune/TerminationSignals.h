// TerminationSignals: holds back the signals that ask the process to end until it has cleaned up.
#pragma once

#include <csignal>

namespace morvelune::tool {

// While it lives, SIGINT, SIGTERM, SIGHUP and SIGQUIT wait; when it goes out of scope, one that
// came takes its usual effect, so that the caller sees by which signal the process ended. Make it
// before any thread is started, because threads inherit what is held back. A signal that the
// process was started to ignore stays ignored.
class TerminationSignals {
 public:
  TerminationSignals();
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  // Readable, for poll(), once such a signal has come.
  [[nodiscard]] int descriptor() const { return descriptor_; }
  // Whether one has.
  [[nodiscard]] bool haveCome() const;

 private:
  sigset_t previous_{};
  int descriptor_ = -1;
};

}  // namespace morvelune::tool
