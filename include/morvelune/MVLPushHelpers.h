// MVLPushHelpers: reads a push's payload.
//
//   if (MVLPushHelpers::isMorveluneNotification(response)) {
//     auto address = MVLPushHelpers::trackingURLForAction("dismiss", response);
//   }
#pragma once

#include <optional>
#include <string_view>
#include <variant>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/UNNotification.h"
#include "morvelune/platform/URL.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// Whatever may stand for a notification: nothing, a payload dictionary (or any other value, which
// is none), or one of the platform's records.
using AnyNotification = std::variant<std::monostate, Value, UNNotification, UNNotificationResponse,
                                     UNNotificationRequest>;

// Stateless; callable from any thread.
class MORVELUNE_API MVLPushHelpers {
 public:
  MVLPushHelpers() = delete;

  // The payload. A dictionary is returned as the same object; a UNNotification and a response give
  // UNNotificationToDictionary() of the notification; a request gives its content's userInfo as it
  // stands, with no "aps" section made up. The empty dictionary for anything else and for a request
  // without userInfo.
  [[nodiscard]] static Dictionary userInfoFromNotification(const AnyNotification& notification);

  // Whether this system sent the notification: its payload holds the key "k2tid", with any value.
  [[nodiscard]] static bool isMorveluneNotification(const AnyNotification& notification);

  // The tracking address of an action, such as "display": the descriptor's "url" and the action's
  // entry joined as file paths (so "//" becomes "/"), with its tags filled from the descriptor's
  // "params" over the common parameters. Empty when the payload has no descriptor "mvl-tk", when
  // "url" or the action's entry is missing or no string, and when the result is no valid URL.
  [[nodiscard]] static std::optional<URL> trackingURLForAction(
      std::optional<std::string_view> action, const AnyNotification& forNotification);

  // The payload without the keys that are reserved to the system and the platform; its values are
  // untouched. The empty dictionary for an absent payload.
  [[nodiscard]] static Dictionary customParamsFromUserInfo(
      const std::optional<Dictionary>& userInfo);

  // The first button of "k2tb" whose "bid" is exactly the action, as the same object. Empty when
  // there is none, and for an absent action or payload. Elements that are no dictionary are
  // skipped.
  [[nodiscard]] static std::optional<Dictionary> actionParams(
      std::optional<std::string_view> action, const std::optional<Dictionary>& fromUserInfo);

  // The "ccp" of that button, as the same object; the empty dictionary when there is no such
  // button, or none with a dictionary there.
  [[nodiscard]] static Dictionary actionCustomParams(std::optional<std::string_view> action,
                                                     const std::optional<Dictionary>& fromUserInfo);
};

}  // namespace morvelune
