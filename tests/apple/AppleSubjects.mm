// The contracts on the platform of iOS, here over GNUstep and the stand-ins.
#include "Departures.h"
#include "Standins.h"
#include "contract/Subject.h"
#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::testing {
namespace {

// The locale is the process's own.
DeviceAndLocale device(const DeviceState& state) {
  StandinSetIdentifierForVendor(apple::toNative(state.vendor));
  const Size size = state.screen.value_or(Size{});
  UIScreen* screen = [UIScreen screenOfSize:{size.width, size.height} fixedOrigin:{}];
  StandinSetMainScreen(state.screen ? screen : nil);
  return {apple::makeDevice(), apple::makeLocale()};
}

Queue mainQueue() {
  return {apple::makeMainQueue(), [] { StandinDrainMainQueue(); }};
}

}  // namespace

std::vector<Subject> subjects() {
  return {{.name = "Apple",
           .text = apple::makeText,
           .digest = apple::makeDigest,
           .locale = apple::makeLocale,
           .device = device,
           .files = apple::makeFileManager,
           .attachments = apple::makeNotificationAttachments,
           .session = [] { return apple::makeURLSession(); },
           .queue = mainQueue,
           .departures = departures()}};
}

}  // namespace morvelune::testing
