#include "morvelune/MVLPushHelpers.h"

#include <string>

#include "morvelune/MVLURLHelpers.h"
#include "morvelune/UNNotificationToDictionary.h"
#include "morvelune/platform/Path.h"

namespace morvelune {
namespace {

// The payload of each kind of thing that may stand for a notification; empty when it has none.
struct PayloadOf {
  std::optional<Dictionary> operator()(std::monostate) const { return std::nullopt; }
  std::optional<Dictionary> operator()(const Value& value) const { return value.dictionary(); }
  std::optional<Dictionary> operator()(const UNNotification& notification) const {
    return UNNotificationToDictionary(notification);
  }
  std::optional<Dictionary> operator()(const UNNotificationResponse& response) const {
    return UNNotificationToDictionary(response.notification);
  }
  std::optional<Dictionary> operator()(const UNNotificationRequest& request) const {
    return request.content ? request.content->userInfo() : std::nullopt;
  }
};

}  // namespace

Dictionary MVLPushHelpers::userInfoFromNotification(const AnyNotification& notification) {
  return std::visit(PayloadOf(), notification).value_or(Dictionary());
}

bool MVLPushHelpers::isMorveluneNotification(const AnyNotification& notification) {
  return userInfoFromNotification(notification).contains("k2tid");
}

std::optional<URL> MVLPushHelpers::trackingURLForAction(std::optional<std::string_view> action,
                                                        const AnyNotification& forNotification) {
  const auto descriptor = userInfoFromNotification(forNotification).dictionary("mvl-tk");
  if (!descriptor || !action) return std::nullopt;
  const auto base = descriptor->string("url");
  const auto component = descriptor->string(*action);
  if (!base || !component) return std::nullopt;
  const auto filled = MVLURLHelpers::filledURL(stringByAppendingPathComponent(*base, *component),
                                               descriptor->dictionary("params"));
  return filled ? URL::parse(*filled) : std::nullopt;
}

}  // namespace morvelune
