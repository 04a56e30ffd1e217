#include "morvelune/MVLNotificationContentExtension.h"

#include <algorithm>
#include <string_view>

#include "payload/PayloadKeys.h"
#include "util/WhiteSpace.h"

namespace morvelune {
namespace {

// The platform's reading of a string as a boolean.
bool boolValue(std::string_view text) {
  text = withoutLeadingWhiteSpace(text);
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  constexpr std::string_view trueBeginnings = "YyTt123456789";
  return !text.empty() && trueBeginnings.find(text.front()) != std::string_view::npos;
}

bool boolValue(const Value& value) {
  if (const auto flag = value.boolean()) return *flag;
  if (const auto flag = value.visitInteger([](auto number) { return number != 0; })) return *flag;
  if (const auto number = value.real()) return *number != 0;
  if (const auto text = value.stringView()) return boolValue(*text);
  return false;
}

// The payload of a response whose action may stand for a button; empty when it cannot.
std::optional<Dictionary> payloadWithButtons(const UNNotificationResponse& response) {
  if (!MVLPushHelpers::isMorveluneNotification(response)) return std::nullopt;
  if (response.actionIdentifier == UNNotificationDismissActionIdentifier ||
      response.actionIdentifier == UNNotificationDefaultActionIdentifier) {
    return std::nullopt;
  }
  return MVLPushHelpers::userInfoFromNotification(response.notification.request);
}

}  // namespace

bool MVLNotificationContentExtension::shouldDelayDismissForNotificationResponse(
    const UNNotificationResponse& response) {
  const auto payload = payloadWithButtons(response);
  const auto button = MVLPushHelpers::actionParams(response.actionIdentifier, payload);
  const auto delay = button ? button->value(keys::delayDismiss) : std::nullopt;
  return delay && boolValue(*delay);
}

std::optional<Dictionary> MVLNotificationContentExtension::customParamsForNotification(
    const AnyNotification& notification) {
  if (!MVLPushHelpers::isMorveluneNotification(notification)) return std::nullopt;
  return MVLPushHelpers::customParamsFromUserInfo(
      MVLPushHelpers::userInfoFromNotification(notification));
}

std::optional<Dictionary> MVLNotificationContentExtension::actionCustomParams(
    std::optional<std::string_view> /*action*/,
    const UNNotificationResponse& forNotificationResponse) {
  const auto payload = payloadWithButtons(forNotificationResponse);
  if (!payload) return std::nullopt;
  return MVLPushHelpers::actionCustomParams(forNotificationResponse.actionIdentifier, payload);
}

}  // namespace morvelune
