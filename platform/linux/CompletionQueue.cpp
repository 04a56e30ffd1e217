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
  std::thread::id caller;  // who calls the completions, while there is somebody

  // Call these with the lock held.
  [[nodiscard]] bool isCaller() const { return caller == std::this_thread::get_id(); }
  void callWaiting(std::unique_lock<std::mutex>& lock) noexcept {
    while (!waiting.empty()) {
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

  void waitForPosted(std::unique_lock<std::mutex>& lock) {
    changed.wait(lock, [this, last = posted] { return returned >= last; });
  }
  // Whether there is a thread. None is made while another one calls the completions.
  bool start(const std::shared_ptr<State>& self) {
    if (!thread.joinable() && caller == std::thread::id()) {
      thread = backgroundThread([self] { self->run(); });
    }
    return thread.joinable();
  }

  // Of the thread.
  void run() {
    std::unique_lock lock(mutex);
    caller = std::this_thread::get_id();
    do {
      callWaiting(lock);
      changed.wait(lock, [this] { return !waiting.empty() || closed; });
    } while (!waiting.empty());
  }
};

CompletionQueue::CompletionQueue() : state_(std::make_shared<State>()) {}

CompletionQueue::~CompletionQueue() {
  std::unique_lock lock(state_->mutex);
  state_->closed = true;
  state_->changed.notify_all();
  std::thread thread = std::move(state_->thread);
  if (state_->isCaller()) {
    if (thread.joinable()) thread.detach();
  } else if (thread.joinable()) {
    lock.unlock();
    thread.join();
  } else {
    state_->waitForPosted(lock);
  }
}

bool CompletionQueue::start() {
  const std::lock_guard lock(state_->mutex);
  return state_->start(state_);
}

void CompletionQueue::post(FinishedTransfer finished) {
  std::unique_lock lock(state_->mutex);
  state_->waiting.push_back(std::move(finished));
  ++state_->posted;
  if (state_->start(state_)) return state_->changed.notify_all();
  if (state_->caller != std::thread::id()) return;  // which will find it
  const auto state = state_;                        // a completion may destroy the queue
  state->caller = std::this_thread::get_id();
  state->callWaiting(lock);
  state->caller = {};
}

void CompletionQueue::drain() {
  std::unique_lock lock(state_->mutex);
  if (!state_->isCaller()) state_->waitForPosted(lock);
}

}  // namespace morvelune
