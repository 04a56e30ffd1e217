// MVLNotificationContentExtension: what a host's notification content extension asks when the user
// acts on a notification.
//
//   if (MVLNotificationContentExtension::shouldDelayDismissForNotificationResponse(response)) {
//     auto params = MVLNotificationContentExtension::actionCustomParams({}, response);
//   }
//
// Absent and empty are different answers. A notification of another sender gives nothing, nor does
// a system action (opened, dismissed) where the action counts. A button without parameters gives
// the empty dictionary.
#pragma once

#include <optional>
#include <string_view>

#include "morvelune/MVLPushHelpers.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/UNNotification.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// Stateless; callable from any thread.
class MORVELUNE_API MVLNotificationContentExtension {
 public:
  MVLNotificationContentExtension() = delete;

  // Whether the tapped button's "delay-dismiss" reads as true: a boolean that is, a number other
  // than zero, or a string in which, after any white space, an optional sign and any zeros, comes
  // Y, y, T, t or a digit from 1 to 9. False for a foreign notification, a system action and an
  // unknown button.
  [[nodiscard]] static bool shouldDelayDismissForNotificationResponse(
      const UNNotificationResponse& response);

  // The notification's custom parameters; empty for a notification that this system did not send.
  [[nodiscard]] static std::optional<Dictionary> customParamsForNotification(
      const AnyNotification& notification);

  // The tapped button's custom parameters; the empty dictionary when there is no such button or it
  // has none. Empty for a foreign notification and a system action. The first argument is not
  // used: the action is always that of the response.
  [[nodiscard]] static std::optional<Dictionary> actionCustomParams(
      std::optional<std::string_view> action,
      const UNNotificationResponse& forNotificationResponse);
};

}  // namespace morvelune
