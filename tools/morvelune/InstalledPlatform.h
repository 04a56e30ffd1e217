// Putting a platform in use for as long as it is needed.
#pragma once

#include <memory>
#include <utility>

#include "morvelune/platform/Platform.h"

namespace morvelune::tool {

// Puts a platform in use while it lives.
class InstalledPlatform {
 public:
  explicit InstalledPlatform(std::shared_ptr<const Platform> platform) {
    Platform::install(std::move(platform));
  }
  ~InstalledPlatform() { Platform::install(nullptr); }
  InstalledPlatform(const InstalledPlatform&) = delete;
  InstalledPlatform& operator=(const InstalledPlatform&) = delete;
};

}  // namespace morvelune::tool
