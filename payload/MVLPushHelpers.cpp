#include "morvelune/MVLPushHelpers.h"

#include <string>

#include "morvelune/MVLConstants.h"
#include "morvelune/MVLURLHelpers.h"
#include "morvelune/UNNotificationToDictionary.h"
#include "morvelune/platform/Path.h"

namespace morvelune {
namespace {

// The top-level keys that are no custom parameters.
constexpr std::string_view reservedKeys[] = {
    "aps",
    "k2tid",
    "k2turl",
    "k2td",
    "k2tb",
    "openWithSafari",
    "zuk2t.log.id",
    "zuk2tIdentifier",
    MVLPayloadTrackingSentKey,
    "mvl-tk",
    MVLPayloadAttachmentsKey,
};

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

Dictionary MVLPushHelpers::customParamsFromUserInfo(const std::optional<Dictionary>& userInfo) {
  return userInfo ? userInfo->without(reservedKeys) : Dictionary();
}

std::optional<Dictionary> MVLPushHelpers::actionParams(
    std::optional<std::string_view> action, const std::optional<Dictionary>& fromUserInfo) {
  const auto buttons = fromUserInfo ? fromUserInfo->array("k2tb") : std::nullopt;
  if (!action || !buttons) return std::nullopt;
  for (const Value& element : *buttons) {
    auto button = element.dictionary();
    if (button && button->string("bid") == action) return button;
  }
  return std::nullopt;
}

Dictionary MVLPushHelpers::actionCustomParams(std::optional<std::string_view> action,
                                              const std::optional<Dictionary>& fromUserInfo) {
  const auto button = actionParams(action, fromUserInfo);
  const auto params = button ? button->dictionary("ccp") : std::nullopt;
  return params.value_or(Dictionary());
}

}  // namespace morvelune
