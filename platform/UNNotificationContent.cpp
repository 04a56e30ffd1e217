#include "morvelune/platform/UNNotificationContent.h"

#include <utility>

namespace morvelune {

UNNotificationContent::UNNotificationContent(Fields fields, Origin origin)
    : userInfo_(std::move(fields.userInfo)),
      attachments_(std::move(fields.attachments)),
      title_(std::move(fields.title)),
      subtitle_(std::move(fields.subtitle)),
      body_(std::move(fields.body)),
      origin_(std::move(origin)) {}

UNNotificationContent::Fields UNNotificationContent::fields() const {
  return {title(), subtitle(), body(), userInfo(), attachments()};
}

std::shared_ptr<UNMutableNotificationContent> UNNotificationContent::mutableCopy() const {
  return std::make_shared<UNMutableNotificationContent>(fields());
}

std::shared_ptr<const UNNotificationContent> UNNotificationContent::copy() const {
  return std::make_shared<const UNNotificationContent>(fields());
}

}  // namespace morvelune
