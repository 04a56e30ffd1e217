#include "morvelune/platform/Platform.h"

#include <mutex>
#include <utility>

namespace morvelune {
namespace {

struct Installed {
  std::mutex mutex;
  std::shared_ptr<const Platform> platform;
};

// Never destroyed, because threads that still run at exit may ask for the platform.
Installed& installed() {
  static auto& installed = *new Installed;
  return installed;
}

}  // namespace

std::shared_ptr<const Platform> Platform::current() {
  {
    const std::lock_guard lock(installed().mutex);
    if (installed().platform) return installed().platform;
  }
  return native();
}

void Platform::install(std::shared_ptr<const Platform> platform) {
  const std::lock_guard lock(installed().mutex);
  std::swap(installed().platform, platform);  // the replaced one is released after the lock
}

}  // namespace morvelune
