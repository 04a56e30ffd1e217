// NotificationCenter: the process's broadcast of named notifications.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "morvelune/platform/Value.h"

namespace morvelune {

// What is broadcast. The object is its sender, null when there is none.
struct PostedNotification {
  std::string name;
  std::shared_ptr<const void> object;
  std::optional<Dictionary> userInfo;
};

// Callable from any thread. Observers are called on the posting thread.
class NotificationCenter {
 public:
  using Observer = std::function<void(const PostedNotification&)>;
  enum class Token : std::uint64_t {};

  virtual ~NotificationCenter() = default;

  // Has `observer` called for each post of `name`; with an object only for posts of that very
  // object, which the centre does not keep alive. The token removes it again.
  virtual Token addObserver(std::string name, std::shared_ptr<const void> object,
                            Observer observer) = 0;
  // The observer is not called any more, unless a post on another thread is calling it right now.
  // An unknown token does nothing.
  virtual void removeObserver(Token token) = 0;
  // Calls the observers in the order in which they were added. An observer may add and remove
  // observers: those added are called from the next post on, those removed no more.
  virtual void post(const PostedNotification& notification) = 0;
};

}  // namespace morvelune
