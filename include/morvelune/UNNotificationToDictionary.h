// UNNotificationToDictionary: the payload of a delivered notification.
#pragma once

#include "morvelune/platform/Export.h"
#include "morvelune/platform/UNNotification.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// A new dictionary: {"aps": {"alert": {"body", "title", "subtitle"}}} made of the texts that are
// shown, an absent one as "", and over it every entry of the content's userInfo. A userInfo with
// "aps", as a remote notification has, therefore replaces the whole section; nothing is merged.
[[nodiscard]] MORVELUNE_API Dictionary
UNNotificationToDictionary(const UNNotification& notification);

}  // namespace morvelune
