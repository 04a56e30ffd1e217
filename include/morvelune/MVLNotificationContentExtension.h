// MVLNotificationContentExtension: what a host's notification content extension asks when the user
// acts on a notification.
//
//   if (MVLNotificationContentExtension::shouldDelayDismissForNotificationResponse(response)) {
//     auto params = MVLNotificationContentExtension::actionCustomParams({}, response);
//   }
//
// Absent and empty are different answers: a notification of another sender, or a system action
// (opened, dismissed), gives nothing; a button without parameters gives the empty dictionary.
#pragma once

#include <optional>
#include <string>

#include "morvelune/MVLPushHelpers.h"
#include "morvelune/platform/UNNotification.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// Stateless; callable from any thread.
class MVLNotificationContentExtension {
 public:
  MVLNotificationContentExtension() = delete;

  // Whether the tapped button's "delay-dismiss" reads as true: a boolean that is, a number other
  // than zero, or a string in which, after white space, one sign and zeros, stands Y, y, T, t or a
  // digit from 1 to 9. False for a foreign notification, a system action and an unknown button.
  [[nodiscard]] static bool shouldDelayDismissForNotificationResponse(
      const UNNotificationResponse& response);

  // The notification's custom parameters; empty for a notification that this system did not send.
  [[nodiscard]] static std::optional<Dictionary> customParamsForNotification(
      const AnyNotification& notification);

  // The tapped button's custom parameters; the empty dictionary when there is no such button or it
  // has none. Empty for a foreign notification and a system action. The first argument is not
  // used: the action is always that of the response.
  [[nodiscard]] static std::optional<Dictionary> actionCustomParams(
      const std::optional<std::string>& action,
      const UNNotificationResponse& forNotificationResponse);
};

}  // namespace morvelune
