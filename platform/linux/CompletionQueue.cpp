#include "platform/linux/CompletionQueue.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/linux/BackgroundThread.h"

namespace morvelune {

struct CompletionQueue::State {
  std::mutex mutex;  // guards what follows
  std::condition_variable changed;
  std::deque<FinishedTransfer> waiting;
  std::uint64_t posted = 0;
  std::uint64_t returned = 0;
  bool closed = false;
  std::thread thread;

  // Call with the lock held.
  [[nodiscard]] bool onOwnThread() const { return thread.get_id() == std::this_thread::get_id(); }

  void run() {
    std::unique_lock lock(mutex);
    for (;;) {
      changed.wait(lock, [this] { return !waiting.empty() || closed; });
      if (waiting.empty()) return;
      {
        FinishedTransfer next = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        next.completion(std::move(next.outcome));
      }  // what the completion holds may call the session as it goes: still without the lock
      lock.lock();
      ++returned;
      changed.notify_all();
    }
  }
};

CompletionQueue::CompletionQueue() : state_(std::make_shared<State>()) {}

CompletionQueue::~CompletionQueue() {
  std::thread thread;
  {
    const std::lock_guard lock(state_->mutex);
    state_->closed = true;
    state_->changed.notify_all();
    if (state_->onOwnThread()) {
      state_->thread.detach();
    } else {
      thread = std::move(state_->thread);
    }
  }
  if (thread.joinable()) thread.join();
}

void CompletionQueue::post(FinishedTransfer finished) {
  const std::lock_guard lock(state_->mutex);
  state_->waiting.push_back(std::move(finished));
  ++state_->posted;
  if (!state_->thread.joinable()) {
    state_->thread = backgroundThread([state = state_] { state->run(); });
  }
  state_->changed.notify_all();
}

void CompletionQueue::drain() {
  std::unique_lock lock(state_->mutex);
  if (state_->onOwnThread()) return;
  state_->changed.wait(lock, [this, last = state_->posted] { return state_->returned >= last; });
}

}  // namespace morvelune
