// UNNotificationRequest, UNNotification and UNNotificationResponse: the platform's records around
// a content. Copying one copies handles; a missing content is a null pointer.
#pragma once

#include <memory>
#include <string>

#include "morvelune/platform/UNNotificationContent.h"

namespace morvelune {

// A notification as it was requested, before it is shown.
struct UNNotificationRequest {
  std::shared_ptr<const UNNotificationContent> content;
};

// A notification as it was delivered.
struct UNNotification {
  UNNotificationRequest request;
};

// What the user did with a delivered notification.
struct UNNotificationResponse {
  UNNotification notification;
  std::string actionIdentifier;
};

// The action identifiers that stand for no button: the user opened or dismissed the notification.
inline constexpr char UNNotificationDefaultActionIdentifier[] =
    "com.apple.UNNotificationDefaultActionIdentifier";
inline constexpr char UNNotificationDismissActionIdentifier[] =
    "com.apple.UNNotificationDismissActionIdentifier";

}  // namespace morvelune
