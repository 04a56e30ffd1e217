// The library's views of the platform's notification contents. A view reads the object's fields
// once, when it is made. What is written to the view is also written to the object, so that the
// handler receives that very object with all its other properties.
#pragma once

#include <mutex>

#include "morvelune/platform/UNNotificationContent.h"

namespace morvelune::apple {

class NativeContent : public UNNotificationContent {
 public:
  using UNNotificationContent::UNNotificationContent;
  [[nodiscard]] std::shared_ptr<UNMutableNotificationContent> mutableCopy() const override;
  [[nodiscard]] std::shared_ptr<const UNNotificationContent> copy() const override;
};

class NativeMutableContent : public UNMutableNotificationContent {
 public:
  using UNMutableNotificationContent::UNMutableNotificationContent;
  void setUserInfo(Dictionary userInfo) override;
  void setAttachments(Attachments attachments) override;
  [[nodiscard]] std::shared_ptr<UNMutableNotificationContent> mutableCopy() const override;
  [[nodiscard]] std::shared_ptr<const UNNotificationContent> copy() const override;

 private:
  // The platform's object is not safe to copy while it is written. Recursive, because an observer
  // of its properties may call this object.
  mutable std::recursive_mutex mutex_;
};

}  // namespace morvelune::apple
