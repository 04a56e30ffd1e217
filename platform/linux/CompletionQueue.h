// CompletionQueue: the thread on which a session calls its completions, one at a time.
#pragma once

#include <memory>

#include "platform/linux/CurlTransfer.h"

namespace morvelune {

// Callable from any thread. The thread starts with the first completion.
class CompletionQueue {
 public:
  CompletionQueue();
  // Returns when all posted completions have returned. On the queue's own thread, where a
  // completion may hold the last handle on the session, it returns at once and the rest follow.
  ~CompletionQueue();
  CompletionQueue(const CompletionQueue&) = delete;
  CompletionQueue& operator=(const CompletionQueue&) = delete;

  // Has the completion called, after all posted before, and released.
  void post(FinishedTransfer finished);
  // Waits until all completions posted so far have returned; on the queue's own thread it does not.
  void drain();

 private:
  struct State;
  std::shared_ptr<State> state_;  // shared with the thread, which may outlive the queue
};

}  // namespace morvelune
