// The contracts on the platform of iOS, here over GNUstep and the stand-ins.
#include "Departures.h"
#include "Standins.h"
#include "contract/Subject.h"
#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {
namespace {

Files filesOnDisk() {
  auto folder = std::make_shared<TemporaryDirectory>();
  return {apple::makeFileManager(), folder->path(),
          [folder](const auto& name, const auto& bytes) { folder->write(name, bytes); }};
}

Network loopback() {
  auto origin = std::make_shared<LoopbackOrigin>();
  const auto serve = [origin, served = 0](const Reply& reply) mutable {
    return origin->serve("/" + std::to_string(++served), reply);
  };
  return {apple::makeFileManager(), apple::makeURLSession(), serve, [] {}};
}

// The locale is the process's own.
DeviceAndLocale device(const DeviceState& state) {
  NSString* vendor = apple::toNative(state.vendor);
  StandinSetIdentifierForVendor(vendor ? [[[NSUUID alloc] initWithUUIDString:vendor] autorelease]
                                       : nil);
  const CGRect bounds =
      NSMakeRect(0, 0, state.screen.value_or(Size{}).width, state.screen.value_or(Size{}).height);
  StandinSetMainScreen(state.screen ? [[[UIScreen alloc] initWithBounds:bounds
                                                            fixedOrigin:CGPoint{}] autorelease]
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
           .files = filesOnDisk,
           .attachments = apple::makeNotificationAttachments,
           .network = loopback,
           .queue = mainQueue,
           .center = apple::makeNotificationCenter,
           .makeObject = [] { return apple::retained([[[NSObject alloc] init] autorelease]); },
           .departures = departures()}};
}

}  // namespace morvelune::testing
