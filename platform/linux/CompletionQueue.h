// CompletionQueue: the thread on which a session calls its completions, one at a time.
#pragma once

#include <memory>

#include "platform/linux/CurlTransfer.h"

namespace morvelune {

// Callable from any thread. The thread is made when it is first needed. While the system gives
// none, completions are called on a thread that posts one.
class CompletionQueue {
 public:
  CompletionQueue();
  // Returns when all posted completions have returned. On the thread that calls them, where a
  // completion may hold the last handle on the session, it returns at once and the rest follow.
  ~CompletionQueue();
  CompletionQueue(const CompletionQueue&) = delete;
  CompletionQueue& operator=(const CompletionQueue&) = delete;

  // Makes the thread if there is none; false when the system gives none.
  [[nodiscard]] bool start();
  // Has the completion called, after all posted before, and released. Hold no lock that a
  // completion might want, because it may be called here.
  void post(FinishedTransfer finished);
  // Waits until all completions posted so far have returned; on the thread that calls them it does
  // not.
  void drain();

 private:
  struct State;
  std::shared_ptr<State> state_;  // shared with the thread, which may outlive the queue
};

}  // namespace morvelune
