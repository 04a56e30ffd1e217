// The library's view of the platform's notification contents. What is read was read when the view
// was made; what is written goes to the platform's own object too, so that the handler receives
// that very object with all its other properties.
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
  // The platform's object is not safe to copy while it is written. Whoever observes its properties
  // may come back here.
  mutable std::recursive_mutex mutex_;
};

}  // namespace morvelune::apple
