#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

class AppleScreen : public Screen {
 public:
  explicit AppleScreen(UIScreen* screen) : screen_(retained(screen)) {}

  [[nodiscard]] Size bounds() const override {
    const CGSize size = native().bounds.size;
    return {size.width, size.height};
  }

  [[nodiscard]] std::optional<Point> fixedOriginInCurrentSpace() const override {
    const CGPoint origin = [native().coordinateSpace convertPoint:CGPoint {}
                                              fromCoordinateSpace:native().fixedCoordinateSpace];
    return Point{origin.x, origin.y};
  }

 private:
  [[nodiscard]] UIScreen* native() const { return objectOf(screen_); }
  const Origin screen_;
};

class AppleDevice : public Device {
 public:
  [[nodiscard]] std::optional<std::string> identifierForVendor() const override {
    return optionalFromNative([UIDevice currentDevice].identifierForVendor.UUIDString);
  }

  [[nodiscard]] std::shared_ptr<const Screen> mainScreen() const override {
    return makeScreen([UIScreen mainScreen]);
  }

  [[nodiscard]] bool isOperatingSystemAtLeastVersion(
      const OperatingSystemVersion& version) const override {
    return [[NSProcessInfo processInfo]
        isOperatingSystemAtLeastVersion:{version.major, version.minor, version.patch}];
  }
};

}  // namespace

std::shared_ptr<const Screen> makeScreen(UIScreen* screen) {
  return screen ? std::make_shared<const AppleScreen>(screen) : nullptr;
}

std::shared_ptr<Device> makeDevice() {
  return std::make_shared<AppleDevice>();
}

}  // namespace morvelune::apple
