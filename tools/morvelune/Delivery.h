// Runs the service extension on one push, as the platform would on a device.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "morvelune/platform/UNNotificationContent.h"
#include "morvelune/platform/Value.h"
#include "morvelune/platform/linux/LinuxPlatform.h"
#include "tools/morvelune/Recorder.h"
#include "tools/morvelune/TerminationSignals.h"

namespace morvelune::tool {

// Why the extension called its content handler: it had nothing to do, all requests had finished,
// or its time had expired.
enum class Cause : std::uint8_t { handedBack, complete, timeLimit };

// One call of the content handler.
struct Delivery {
  Cause cause = Cause::complete;
  double afterMs = 0;
  std::shared_ptr<const UNNotificationContent> content;  // as it was then
};

struct Limits {
  std::chrono::duration<double> time{0};    // until the extension is told that its time expires
  std::chrono::duration<double> linger{0};  // for pending requests after the first delivery
};

struct Outcome {
  std::vector<Delivery> deliveries;  // in the order of the calls
  Recording recording;
};

// Delivers the push on the installed platform, which `recorder` decorates and whose requests
// `session` performs, running the main queue on this thread meanwhile. Ends with the first
// delivery, which comes at the time limit at the latest. When it may linger, it ends when no
// request is pending or the time for that is over. No request runs any more when it returns. Empty
// when a signal asked the process to end.
[[nodiscard]] std::optional<Outcome> deliver(const Dictionary& payload, const Limits& limits,
                                             Recorder& recorder, LinuxURLSession& session,
                                             const TerminationSignals& signals);

}  // namespace morvelune::tool
