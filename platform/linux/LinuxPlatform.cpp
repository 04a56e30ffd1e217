#include "morvelune/platform/linux/LinuxPlatform.h"

#include <cstdlib>
#include <mutex>
#include <utility>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

// The objects of the process are never destroyed, so that they may be used from any thread until
// the process has gone. What must not run on is ended at exit instead: transfers, because the
// libraries that they run on clean up then.
class Sessions {
 public:
  void add(const std::shared_ptr<URLSession>& session) {
    const std::lock_guard lock(mutex_);
    std::erase_if(sessions_, [](const auto& each) { return each.expired(); });
    sessions_.push_back(session);
  }

  void end() {
    for (const auto& each : taken()) {
      if (const auto session = each.lock()) session->invalidateAndCancel();
    }
  }

 private:
  // No lock is held while a session ends, because its completions may make platforms.
  [[nodiscard]] std::vector<std::weak_ptr<URLSession>> taken() {
    const std::lock_guard lock(mutex_);
    return std::exchange(sessions_, {});
  }

  std::mutex mutex_;
  std::vector<std::weak_ptr<URLSession>> sessions_;
};

Sessions& sessions() {
  static auto& sessions = *new Sessions;
  return sessions;
}

// A session that is ended at exit if it still lives.
std::shared_ptr<URLSession> makeSession(const URLSessionOptions& options) {
  auto session = makeLinuxURLSession(options);
  // After the first session, which starts those libraries: what is registered last runs first.
  [[maybe_unused]] static const int registered = std::atexit([] { sessions().end(); });
  sessions().add(session);
  return session;
}

std::shared_ptr<NotificationCenter> notificationCenter() {
  static const auto& center = *new auto(makeLinuxNotificationCenter());
  return center;
}

}  // namespace

std::shared_ptr<LinuxMainQueue> linuxMainQueue() {
  static const auto& queue = *new auto(makeLinuxMainQueue());
  return queue;
}

std::shared_ptr<Platform> makeLinuxPlatform(const LinuxOptions& options) {
  return std::make_shared<Platform>(Platform{
      .urlSession = makeSession(options.session),
      .fileManager = makeLinuxFileManager(),
      .notificationAttachments = makeLinuxNotificationAttachments(),
      .device = makeLinuxDevice(options.device),
      .locale = makeLinuxLocale(options.device),
      .text = makeLinuxText(),
      .digest = makeLinuxDigest(),
      .notificationCenter = notificationCenter(),
      .mainQueue = linuxMainQueue(),
      .systemLog = makeLinuxSystemLog(),
  });
}

std::shared_ptr<const Platform> Platform::native() {
  static const auto& native = *new std::shared_ptr<const Platform>(makeLinuxPlatform());
  return native;
}

}  // namespace morvelune
