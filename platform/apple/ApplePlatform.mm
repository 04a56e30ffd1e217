#include "platform/apple/AppleServices.h"

namespace morvelune {

std::shared_ptr<const Platform> Platform::native() {
  // Never destroyed, so that completions may still use it while the process ends.
  static const auto& native = *new std::shared_ptr<const Platform>(new Platform{
      .urlSession = apple::makeURLSession(),
      .fileManager = apple::makeFileManager(),
      .notificationAttachments = apple::makeNotificationAttachments(),
      .device = apple::makeDevice(),
      .locale = apple::makeLocale(),
      .text = apple::makeText(),
      .digest = apple::makeDigest(),
      .notificationCenter = apple::makeNotificationCenter(),
      .mainQueue = apple::makeMainQueue(),
      .systemLog = apple::makeSystemLog(),
  });
  return native;
}

}  // namespace morvelune
