#include "tools/morvelune/DeliverCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "morvelune/MVLConstants.h"
#include "morvelune/platform/linux/LinuxPlatform.h"
#include "payload/PayloadKeys.h"
#include "tools/morvelune/Delivery.h"
#include "tools/morvelune/ExitStatus.h"
#include "tools/morvelune/Inspection.h"
#include "tools/morvelune/InstalledPlatform.h"
#include "tools/morvelune/Keep.h"
#include "tools/morvelune/Options.h"
#include "tools/morvelune/Payload.h"
#include "tools/morvelune/PrivateFolder.h"
#include "tools/morvelune/Report.h"
#include "tools/morvelune/TextTable.h"

namespace morvelune::tool {
namespace {

struct DeliverOptions {
  std::string payload;                              // a file, or "-"
  Limits limits{.time = std::chrono::seconds(30)};  // what the platform gives an extension
  std::optional<std::string> keep;
  bool json = false;
  bool strict = false;
  DeviceProfile device;
};

std::chrono::duration<double> seconds(const std::string& text) {
  constexpr double day = 86400;  // anything longer is a typing mistake
  return std::chrono::duration<double>(decimal(text, day));
}

std::vector<AttachmentEntry> attachmentEntries(const Dictionary& payload) {
  std::vector<AttachmentEntry> entries;
  for (const Value& each : payload.array(MVLPayloadAttachmentsKey).value_or(Array())) {
    const auto entry = each.dictionary().value_or(Dictionary());
    entries.push_back({entry.string(MVLAttachmentIDKey).value_or(keys::defaultAttachmentIdentifier),
                       entry.string(MVLAttachmentURLKey).value_or("")});
  }
  return entries;
}

// From the last delivery, which has the most attachments, to the first; false when a signal asked
// the process to end.
bool keepAll(Report& report, const std::string& folder, const TerminationSignals& signals) {
  const auto& deliveries = report.outcome.deliveries;
  try {
    for (auto each = deliveries.rbegin(); each != deliveries.rend(); ++each) {
      const bool isDone = keepAttachments(each->content->attachments(), folder, report.keptPaths,
                                          [&signals] { return signals.haveCome(); });
      if (!isDone) return false;
    }
  } catch (const std::filesystem::filesystem_error& error) {
    report.keepError = "--keep: " + error.path1().string() + ": " + error.code().message();
  }
  return true;
}

bool isIncomplete(const Recording& recording) {
  return !recording.refused.empty() ||
         std::any_of(recording.requests.begin(), recording.requests.end(), [](const auto& request) {
           return request.outcome != RecordedRequest::Outcome::finished;
         });
}

int fail(int status, const std::string& message) {
  std::cerr << "morvelune: " << shown(message) << '\n';
  return status;
}

Inspection inspectFor(const Payload& payload, const DeviceProfile& device) {
  LinuxOptions options;
  options.device = device;
  const InstalledPlatform installed(makeLinuxPlatform(options));
  return inspect(payload.content, payload.bytes);
}

// Empty when a signal asked the process to end.
std::optional<Report> reportOn(const Payload& payload, const DeliverOptions& options,
                               const Limits& limits, const PrivateFolder& folder,
                               const TerminationSignals& signals) {
  URLSessionOptions sessionOptions;
  sessionOptions.temporaryDirectory = folder.path();
  const auto session = makeLinuxURLSession(sessionOptions);
  const auto platform = makeLinuxPlatform(session, options.device);
  Recorder recorder(attachmentEntries(payload.content));
  const InstalledPlatform installed(recorder.decorate(*platform));
  auto outcome = deliver(payload.content, limits, recorder, *session, signals);
  if (!outcome) return std::nullopt;
  Report report;
  report.outcome = std::move(*outcome);
  if (options.keep && !keepAll(report, *options.keep, signals)) return std::nullopt;
  return report;
}

// Delivers, reports on standard output, and gives the exit status.
int run(const DeliverOptions& options) {
  const auto read = readPayload(options.payload);
  if (const auto* error = std::get_if<PayloadError>(&read)) {
    return fail(exitFailed, options.payload + ':' + describe(*error));
  }
  if (options.keep) {
    try {
      prepareKeepFolder(*options.keep);
    } catch (const std::filesystem::filesystem_error& error) {
      return fail(exitUsage, "--keep: " + *options.keep + ": " + error.code().message());
    }
  }
  const auto& payload = std::get<Payload>(read);
  const auto start = std::chrono::steady_clock::now();
  // While nothing is left to be cleaned up, and signals have their usual effect.
  Inspection inspection = inspectFor(payload, options.device);
  std::string text;
  std::string log;
  std::string error;
  bool incomplete = false;
  {
    const TerminationSignals signals;
    const PrivateFolder folder;
    Limits limits = options.limits;
    limits.time -= std::chrono::steady_clock::now() - start;
    auto report = reportOn(payload, options, limits, folder, signals);
    if (!report) return exitFailed;  // not reached: the signal ends the process here
    report->recognised = inspection.recognised;
    report->findings = std::move(inspection.findings);
    text = options.json ? jsonReport(*report) : textReport(*report);
    incomplete = isIncomplete(report->outcome.recording);
    error = report->keepError;
    if (!options.json) {
      for (const std::string& line : report->outcome.recording.log) {
        log += shown(line) + '\n';
      }
    }
  }
  // Printed last, so that nothing is left behind however long the reader takes.
  std::cerr << log;
  std::cout << text;
  if (!error.empty()) return fail(exitFailed, error);
  return options.strict && incomplete ? exitFaulty : exitSuccess;
}

}  // namespace

void addDeliverCommand(CLI::App& app, int& status) {
  const auto options = std::make_shared<DeliverOptions>();
  CLI::App* deliver = app.add_subcommand("deliver", "Deliver a push and report what is shown");
  deliver->add_option("PAYLOAD", options->payload, "The push's JSON; \"-\" is standard input")
      ->required()
      ->type_name("");
  addOption(
      *deliver, "--time-limit",
      [options](const auto& text) { options->limits.time = seconds(text); },
      "When the extension's time expires [30]", "SECONDS");
  addOption(
      *deliver, "--linger", [options](const auto& text) { options->limits.linger = seconds(text); },
      "How long to wait for a second delivery [0]", "SECONDS");
  addOption(
      *deliver, "--keep", [options](const auto& text) { options->keep = text; },
      "Keep delivered attachments in this folder", "DIR");
  deliver->add_flag("--json", options->json, "Report as one JSON object");
  deliver->add_flag("--strict", options->strict,
                    "Exit with 3 when a request failed or is still pending, a type was unknown or "
                    "an attachment was refused");
  addDeviceOptions(*deliver, options->device);
  deliver->footer(
      "Exit status: 0 delivered, 1 a payload that cannot be read or a report that cannot be "
      "written, 2 wrong usage, 3 only with --strict.");
  deliver->callback([options, &status] { status = run(*options); });
}

}  // namespace morvelune::tool
