// Threads of the library's own.
#pragma once

#include <pthread.h>

#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

namespace morvelune {

// Holds back, on this thread, every signal but those that a thread's own fault raises. Gives the
// thread its mask back when it goes out of scope.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    sigset_t held;
    sigfillset(&held);
    for (const int fault : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGTRAP}) {
      sigdelset(&held, fault);
    }
    pthread_sigmask(SIG_SETMASK, &held, &before_);
  }
  ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

 private:
  sigset_t before_{};
};

// A thread that takes no signal meant for the process, so that the host's handlers run on the
// host's threads only. Not joinable when the system gives no thread.
template <typename Function>
[[nodiscard]] std::thread backgroundThread(Function function) {
  const SignalsHeldBack heldBack;  // inherited by the new thread
  try {
    return std::thread(std::move(function));
  } catch (const std::system_error&) {
    return {};
  }
}

}  // namespace morvelune
