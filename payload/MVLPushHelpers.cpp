#include "morvelune/MVLPushHelpers.h"

#include <string>

#include "morvelune/UNNotificationToDictionary.h"
#include "payload/PayloadKeys.h"
#include "payload/TrackingDescriptor.h"

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
  return userInfoFromNotification(notification).contains(keys::identifier);
}

std::optional<URL> MVLPushHelpers::trackingURLForAction(std::optional<std::string_view> action,
                                                        const AnyNotification& forNotification) {
  const auto descriptor = userInfoFromNotification(forNotification).dictionary(keys::tracking);
  if (!descriptor || !action) return std::nullopt;
  const auto filled = TrackingDescriptor(*descriptor).filledAddress(*action);
  return filled ? URL::parse(*filled) : std::nullopt;
}

Dictionary MVLPushHelpers::customParamsFromUserInfo(const std::optional<Dictionary>& userInfo) {
  return userInfo ? userInfo->without(keys::reserved) : Dictionary();
}

std::optional<Dictionary> MVLPushHelpers::actionParams(
    std::optional<std::string_view> action, const std::optional<Dictionary>& fromUserInfo) {
  const auto buttons = fromUserInfo ? fromUserInfo->array(keys::buttons) : std::nullopt;
  if (!action || !buttons) return std::nullopt;
  for (const Value& element : *buttons) {
    auto button = element.dictionary();
    if (button && button->stringView(keys::buttonIdentifier) == action) return button;
  }
  return std::nullopt;
}

Dictionary MVLPushHelpers::actionCustomParams(std::optional<std::string_view> action,
                                              const std::optional<Dictionary>& fromUserInfo) {
  const auto button = actionParams(action, fromUserInfo);
  const auto params = button ? button->dictionary(keys::buttonParams) : std::nullopt;
  return params.value_or(Dictionary());
}

}  // namespace morvelune
