#include "morvelune/UNNotificationToDictionary.h"

#include "payload/PayloadKeys.h"

namespace morvelune {

Dictionary UNNotificationToDictionary(const UNNotification& notification) {
  const auto& content = notification.request.content;
  const auto text = [&content](auto read) {
    return content ? ((*content).*read)().value_or("") : std::string();
  };
  const Dictionary alert{{"body", text(&UNNotificationContent::body)},
                         {"title", text(&UNNotificationContent::title)},
                         {"subtitle", text(&UNNotificationContent::subtitle)}};
  const Dictionary shown{{keys::aps, Dictionary{{"alert", alert}}}};
  const auto userInfo = content ? content->userInfo() : std::nullopt;
  return shown.with(userInfo.value_or(Dictionary()));
}

}  // namespace morvelune
