// Device: what the platform tells about the device.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Screen.h"

namespace morvelune {

struct OperatingSystemVersion {
  int major = 0;
  int minor = 0;
  int patch = 0;
};

// Callable from any thread. Nothing is cached: each call reads the device again.
class MORVELUNE_API Device {
 public:
  virtual ~Device() = default;

  // The canonical 8-4-4-4-12 text of the identifier for the vendor; empty when there is none.
  [[nodiscard]] virtual std::optional<std::string> identifierForVendor() const = 0;
  // Null when the device has no screen.
  [[nodiscard]] virtual std::shared_ptr<const Screen> mainScreen() const = 0;
  // Whether the system is an iOS of at least this version, or behaves like one.
  [[nodiscard]] virtual bool isOperatingSystemAtLeastVersion(
      const OperatingSystemVersion& version) const = 0;
};

}  // namespace morvelune
