#include "morvelune/platform/linux/LinuxPlatform.h"

#include <utility>

#include "platform/linux/LinuxServices.h"

namespace morvelune {

// The queue, the centre and the native platform are never destroyed, so that they may be used from
// any thread until the process has gone.
std::shared_ptr<LinuxMainQueue> linuxMainQueue() {
  static const auto& queue = *new auto(makeLinuxMainQueue());
  return queue;
}

std::shared_ptr<LinuxNotificationCenter> linuxNotificationCenter() {
  static const auto& center = *new auto(makeLinuxNotificationCenter());
  return center;
}

std::shared_ptr<Platform> makeLinuxPlatform(const LinuxOptions& options) {
  return makeLinuxPlatform(makeLinuxURLSession(options.session), options.device);
}

std::shared_ptr<Platform> makeLinuxPlatform(std::shared_ptr<LinuxURLSession> session,
                                            const DeviceProfile& device) {
  return std::make_shared<Platform>(Platform{
      .urlSession = std::move(session),
      .fileManager = makeLinuxFileManager(),
      .notificationAttachments = makeLinuxNotificationAttachments(),
      .device = makeLinuxDevice(device),
      .locale = makeLinuxLocale(device),
      .text = makeLinuxText(),
      .digest = makeLinuxDigest(),
      .notificationCenter = linuxNotificationCenter(),
      .mainQueue = linuxMainQueue(),
      .systemLog = makeLinuxSystemLog(),
  });
}

std::shared_ptr<const Platform> Platform::native() {
  static const auto& native = *new std::shared_ptr<const Platform>(makeLinuxPlatform());
  return native;
}

}  // namespace morvelune
