#include "morvelune/MVLCommonHelpers.h"

#include <utility>

#include "morvelune/platform/Platform.h"

namespace morvelune {

std::string MVLCommonHelpers::countryCode() {
  return Platform::current()->locale->countryCode().value_or("");
}

void MVLCommonHelpers::postNotificationOnMainThread(std::optional<std::string_view> name,
                                                    std::shared_ptr<const void> object,
                                                    std::optional<Dictionary> userInfo) {
  if (!name) return;
  const auto platform = Platform::current();
  platform->mainQueue->async(
      [center = platform->notificationCenter,
       notification = PostedNotification{std::string(*name), std::move(object),
                                         std::move(userInfo)}] { center->post(notification); });
}

void MVLCommonHelpers::postNotificationOnMainThread(std::optional<std::string_view> name,
                                                    std::optional<Dictionary> userInfo) {
  postNotificationOnMainThread(name, nullptr, std::move(userInfo));
}

void MVLCommonHelpers::postNotificationOnMainThread(std::optional<std::string_view> name) {
  postNotificationOnMainThread(name, nullptr, std::nullopt);
}

}  // namespace morvelune
