#include "morvelune/MVLCommonHelpers.h"

#include <utility>

#include "morvelune/platform/Platform.h"

namespace morvelune {

std::string MVLCommonHelpers::countryCode() {
  return Platform::current()->locale->countryCode().value_or("");
}

void MVLCommonHelpers::postNotificationOnMainThread(std::optional<std::string> name,
                                                    std::shared_ptr<const void> object,
                                                    std::optional<Dictionary> userInfo) {
  if (!name) return;
  const auto platform = Platform::current();
  platform->mainQueue->async(
      [center = platform->notificationCenter,
       notification = PostedNotification{std::move(*name), std::move(object),
                                         std::move(userInfo)}] { center->post(notification); });
}

void MVLCommonHelpers::postNotificationOnMainThread(std::optional<std::string> name,
                                                    std::optional<Dictionary> userInfo) {
  postNotificationOnMainThread(std::move(name), nullptr, std::move(userInfo));
}

void MVLCommonHelpers::postNotificationOnMainThread(std::optional<std::string> name) {
  postNotificationOnMainThread(std::move(name), nullptr, std::nullopt);
}

}  // namespace morvelune
