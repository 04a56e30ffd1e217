// Putting a platform in use for as long as it is needed.
#pragma once

#include <memory>
#include <string>
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

// A copy of `platform` whose log drops every line.
[[nodiscard]] inline std::shared_ptr<const Platform> withoutLog(const Platform& platform) {
  class NoLog : public SystemLog {
    void writeLine(const std::string& /*line*/) override {}
  };
  auto silent = std::make_shared<Platform>(platform);
  silent->systemLog = std::make_shared<NoLog>();
  return silent;
}

}  // namespace morvelune::tool
