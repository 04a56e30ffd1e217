#include <algorithm>
#include <utility>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

// A screen that is held as a profile says.
class LinuxScreen : public Screen {
 public:
  LinuxScreen(Size size, UIInterfaceOrientation orientation)
      : size_(size), orientation_(orientation) {}

  [[nodiscard]] Size bounds() const override { return size_; }

  [[nodiscard]] std::optional<Point> fixedOriginInCurrentSpace() const override {
    // At least 1, so that the four origins stay apart on a screen whose size is not known.
    const double width = std::max(1.0, size_.width);
    const double height = std::max(1.0, size_.height);
    switch (orientation_) {
      case UIInterfaceOrientationPortrait:
        return Point{0, 0};
      case UIInterfaceOrientationPortraitUpsideDown:
        return Point{width, height};
      case UIInterfaceOrientationLandscapeRight:
        return Point{0, height};
      case UIInterfaceOrientationLandscapeLeft:
        return Point{width, 0};
      case UIInterfaceOrientationUnknown:
        break;
    }
    return std::nullopt;
  }

 private:
  Size size_;
  UIInterfaceOrientation orientation_;
};

class LinuxDevice : public Device {
 public:
  explicit LinuxDevice(DeviceProfile profile) : profile_(std::move(profile)) {}

  [[nodiscard]] std::optional<std::string> identifierForVendor() const override {
    return profile_.identifierForVendor;
  }

  [[nodiscard]] std::shared_ptr<const Screen> mainScreen() const override {
    if (!profile_.screen && !profile_.orientation) return nullptr;
    return std::make_shared<const LinuxScreen>(
        profile_.screen.value_or(Size{}),
        profile_.orientation.value_or(UIInterfaceOrientationUnknown));
  }

  // Linux stands for a current system.
  [[nodiscard]] bool isOperatingSystemAtLeastVersion(
      const OperatingSystemVersion& /*version*/) const override {
    return true;
  }

 private:
  const DeviceProfile profile_;
};

}  // namespace

std::shared_ptr<Device> makeLinuxDevice(const DeviceProfile& profile) {
  return std::make_shared<LinuxDevice>(profile);
}

}  // namespace morvelune
