#include "contract/Subject.h"
#include "platform/linux/LinuxServices.h"

namespace morvelune::testing {
namespace {

DeviceAndLocale linuxDevice(const DeviceState& state) {
  const DeviceProfile profile{.identifierForVendor = state.vendor,
                              .screen = state.screen,
                              .country = state.country.value_or(""),
                              .languages = state.languages};
  return {makeLinuxDevice(profile), makeLinuxLocale(profile)};
}

Queue linuxQueue() {
  auto queue = makeLinuxMainQueue();
  return {queue, [queue] { queue->drain(); }};
}

}  // namespace

std::vector<Subject> subjects() {
  return {{.name = "Linux",
           .text = makeLinuxText,
           .digest = makeLinuxDigest,
           .locale = [] { return makeLinuxLocale({}); },
           .device = linuxDevice,
           .files = makeLinuxFileManager,
           .attachments = makeLinuxNotificationAttachments,
           .session = [] { return makeLinuxURLSession(); },
           .queue = linuxQueue}};
}

}  // namespace morvelune::testing
