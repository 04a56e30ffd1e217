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
  NSString* vendor = apple::toNative(state.vendor);
  StandinSetIdentifierForVendor(
      vendor ? apple::autoreleased([[NSUUID alloc] initWithUUIDString:vendor]) : nil);
  const CGRect bounds =
      NSMakeRect(0, 0, state.screen.value_or(Size{}).width, state.screen.value_or(Size{}).height);
  StandinSetMainScreen(state.screen
                           ? apple::autoreleased([[UIScreen alloc] initWithBounds:bounds
                                                                      fixedOrigin:CGPoint{}])
                           : nil);
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
