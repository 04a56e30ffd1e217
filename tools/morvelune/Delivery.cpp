#include "tools/morvelune/Delivery.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <functional>
#include <thread>
#include <utility>

#include "morvelune/MVLNotificationServiceExtension.h"
#include "morvelune/platform/linux/LinuxPlatform.h"
#include "payload/PayloadKeys.h"

namespace morvelune::tool {
namespace {

using Clock = std::chrono::steady_clock;

// As the platform reads "aps": an alert is a dictionary of texts, or the body alone.
UNNotificationRequest requestOf(const Dictionary& payload) {
  UNNotificationContent::Fields fields{.userInfo = payload};
  if (const auto aps = payload.dictionary(keys::aps)) {
    fields.body = aps->string("alert");
    if (const auto alert = aps->dictionary("alert")) {
      fields.title = alert->string("title");
      fields.subtitle = alert->string("subtitle");
      fields.body = alert->string("body");
    }
  }
  return {std::make_shared<const UNNotificationContent>(std::move(fields))};
}

enum class Wait : std::uint8_t { done, timedOut, interrupted };

int millisecondsUntil(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

// The main loop: runs the main queue until `done` holds, the time is over or a signal comes.
Wait run(std::chrono::duration<double> time, const TerminationSignals& signals,
         const std::function<bool()>& done) {
  const auto queue = linuxMainQueue();
  const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(time);
  while (true) {
    queue->drain();
    if (done()) return Wait::done;
    const int left = millisecondsUntil(deadline);
    if (left == 0) return Wait::timedOut;
    std::array<pollfd, 2> descriptors{
        {{queue->descriptor(), POLLIN, 0}, {signals.descriptor(), POLLIN, 0}}};
    poll(descriptors.data(), descriptors.size(), left);
    if (descriptors[1].revents != 0) return Wait::interrupted;
  }
}

// Notes deliveries on the main queue. Called with anything but the request's own content, the
// handler tells expiry by its thread: only the main one announces it, and completions never run
// there.
UNNotificationServiceExtension::ContentHandler noting(
    std::shared_ptr<std::vector<Delivery>> deliveries, const UNNotificationRequest& request,
    const Recorder& recorder) {
  return [deliveries = std::move(deliveries), own = request.content, recorder,
          mainThread = std::this_thread::get_id()](
             const std::shared_ptr<const UNNotificationContent>& content) {
    Cause cause = Cause::complete;
    if (std::this_thread::get_id() == mainThread) cause = Cause::timeLimit;
    if (content == own) cause = Cause::handedBack;
    Delivery delivery{cause, recorder.elapsedMs(), content->copy()};
    linuxMainQueue()->async(
        [deliveries, delivery = std::move(delivery)] { deliveries->push_back(delivery); });
  };
}

}  // namespace

std::optional<Outcome> deliver(const Dictionary& payload, const Limits& limits, Recorder& recorder,
                               LinuxURLSession& session, const TerminationSignals& signals) {
  const UNNotificationRequest request = requestOf(payload);
  const auto deliveries = std::make_shared<std::vector<Delivery>>();
  const auto extension = std::make_shared<MVLNotificationServiceExtension>();
  extension->didReceiveNotificationRequest(request, noting(deliveries, request, recorder));

  Wait wait = run(limits.time, signals, [&] { return !deliveries->empty(); });
  if (wait == Wait::timedOut) extension->serviceExtensionTimeWillExpire();
  if (wait != Wait::interrupted) {
    wait = run(limits.linger, signals, [&] { return recorder.pending() == 0; });
  }
  // Completions of requests that are ended here are not reported: the main queue no longer runs.
  Outcome outcome{*deliveries, recorder.finish()};
  session.invalidateAndCancel();
  if (wait == Wait::interrupted) return std::nullopt;
  return outcome;
}

}  // namespace morvelune::tool
