#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <deque>
#include <mutex>
#include <system_error>
#include <utility>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

// The descriptor is readable exactly while a task waits. Tasks are taken one by one, so that those
// behind one that throws, or that drains the queue itself, are neither lost nor out of order.
class EventMainQueue : public LinuxMainQueue {
 public:
  EventMainQueue() : descriptor_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  }
  ~EventMainQueue() override { ::close(descriptor_); }
  EventMainQueue(const EventMainQueue&) = delete;
  EventMainQueue& operator=(const EventMainQueue&) = delete;

  void async(std::function<void()> task) override {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    ++queued_;
    ::eventfd_write(descriptor_, 1);
  }

  [[nodiscard]] int descriptor() const override { return descriptor_; }

  std::size_t drain() override {
    const std::uint64_t end = queuedSoFar();
    std::size_t ran = 0;
    while (const std::optional<std::function<void()>> task = takeBefore(end)) {
      (*task)();
      ++ran;
    }
    return ran;
  }

 private:
  [[nodiscard]] std::uint64_t queuedSoFar() const {
    const std::lock_guard lock(mutex_);
    return queued_;
  }

  // The first task, unless `end` tasks were queued before it.
  [[nodiscard]] std::optional<std::function<void()>> takeBefore(std::uint64_t end) {
    const std::lock_guard lock(mutex_);
    if (queued_ - tasks_.size() >= end) return std::nullopt;
    std::optional task(std::move(tasks_.front()));
    tasks_.pop_front();
    eventfd_t count = 0;
    if (tasks_.empty()) ::eventfd_read(descriptor_, &count);
    return task;
  }

  const int descriptor_;
  mutable std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
  std::uint64_t queued_ = 0;  // ever
};

}  // namespace

std::shared_ptr<LinuxMainQueue> makeLinuxMainQueue() {
  return std::make_shared<EventMainQueue>();
}

}  // namespace morvelune
