// AtomicProperty: a property whose single reads and single writes are indivisible. A change is a
// read followed by a separate write, and two of those may interleave.
#pragma once

#include <mutex>
#include <utility>

namespace morvelune {

template <typename T>
class AtomicProperty {
 public:
  AtomicProperty() = default;
  explicit AtomicProperty(T value) : value_(std::move(value)) {}

  [[nodiscard]] T load() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }

  // The value that is replaced is released after the lock, so that no destructor runs under it.
  void store(T value) {
    const std::lock_guard lock(mutex_);
    std::swap(value_, value);
  }

 private:
  mutable std::mutex mutex_;
  T value_{};
};

}  // namespace morvelune
