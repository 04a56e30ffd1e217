// Threads of the library's own.
#pragma once

#include <pthread.h>

#include <csignal>
#include <thread>
#include <utility>

namespace morvelune {

// A thread that takes no signal meant for the process, so that the host's handlers run on the
// host's threads only. Signals that a thread's own fault raises still reach it.
template <typename Function>
[[nodiscard]] std::thread backgroundThread(Function function) {
  sigset_t blocked;
  sigset_t before;
  sigfillset(&blocked);
  for (const int fault : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGTRAP}) {
    sigdelset(&blocked, fault);
  }
  pthread_sigmask(SIG_SETMASK, &blocked, &before);  // inherited by the new thread
  std::thread thread(std::move(function));
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace morvelune
