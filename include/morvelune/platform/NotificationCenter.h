// NotificationCenter: the process's broadcast of named notifications.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// What is broadcast. The object is its sender, null when there is none.
struct PostedNotification {
  std::string name;
  std::shared_ptr<const void> object;
  std::optional<Dictionary> userInfo;
};

// Callable from any thread. How observers are added is not part of this interface.
class MORVELUNE_API NotificationCenter {
 public:
  virtual ~NotificationCenter() = default;

  // Calls the observers that want it, on this thread, before it returns.
  virtual void post(const PostedNotification& notification) = 0;
};

}  // namespace morvelune
