// UNNotificationServiceExtension: the platform's base class of a notification service extension.
#pragma once

#include <functional>
#include <memory>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/UNNotification.h"

namespace morvelune {

class MORVELUNE_API UNNotificationServiceExtension {
 public:
  // Takes the content that is to be shown.
  using ContentHandler = std::function<void(std::shared_ptr<const UNNotificationContent>)>;

  UNNotificationServiceExtension() = default;
  virtual ~UNNotificationServiceExtension() = default;
  UNNotificationServiceExtension(const UNNotificationServiceExtension&) = delete;
  UNNotificationServiceExtension& operator=(const UNNotificationServiceExtension&) = delete;

  // Called by the platform, on a thread of its choosing, for each notification.
  virtual void didReceiveNotificationRequest(const UNNotificationRequest& request,
                                             ContentHandler withContentHandler) = 0;
  // Called by the platform, perhaps on another thread, shortly before it stops waiting.
  virtual void serviceExtensionTimeWillExpire() = 0;
};

}  // namespace morvelune
