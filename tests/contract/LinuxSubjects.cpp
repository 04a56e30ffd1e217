#include "contract/Subject.h"
#include "platform/linux/LinuxServices.h"
#include "support/InMemoryPlatform.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {
namespace {

Files filesOnDisk() {
  auto folder = std::make_shared<TemporaryDirectory>();
  return {makeLinuxFileManager(), folder->path(),
          [folder](const auto& name, const auto& bytes) { folder->write(name, bytes); }};
}

Files filesInMemory() {
  auto files = std::make_shared<InMemoryFileManager>();
  return {files, "/memory", [files](const auto& name, const auto& bytes) {
            files->files["/memory/" + name] = bytes;
          }};
}

Network loopback() {
  auto origin = std::make_shared<LoopbackOrigin>();
  const auto serve = [origin, served = 0](const Reply& reply) mutable {
    return origin->serve(std::string("/").append(std::to_string(++served)), reply);
  };
  return {makeLinuxFileManager(), makeLinuxURLSession({}), serve, [] {}};
}

// Where a silent server is one that the test does not run.
Network networkInMemory() {
  auto files = std::make_shared<InMemoryFileManager>();
  auto session = std::make_shared<InMemoryURLSession>(files);
  const auto serve = [session, served = 0](const Reply& reply) mutable {
    const std::string url = std::string("http://h/").append(std::to_string(++served));
    session->answer(url, {.status = reply.status, .body = reply.body});
    return url;
  };
  return {files, session, serve, [session] { session->finishAll(); }};
}

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
           .files = filesOnDisk,
           .attachments = makeLinuxNotificationAttachments,
           .network = loopback,
           .queue = linuxQueue,
           .center = makeLinuxNotificationCenter,
           .makeObject = [] { return std::make_shared<const int>(); }},
          {.name = "InMemory", .files = filesInMemory, .network = networkInMemory}};
}

}  // namespace morvelune::testing
