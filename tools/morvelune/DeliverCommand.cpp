#include "tools/morvelune/DeliverCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "morvelune/MVLConstants.h"
#include "morvelune/platform/linux/LinuxPlatform.h"
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

std::vector<AttachmentEntry> attachmentEntries(const Dictionary& payload,
                                               const Inspection& inspection) {
  std::vector<AttachmentEntry> entries;
  const Array array = payload.array(MVLPayloadAttachmentsKey).value_or(Array());
  for (const auto& attachment : inspection.attachments) {
    const auto entry = array.dictionary(entries.size()).value_or(Dictionary());
    entries.push_back({attachment.identifier, entry.string(MVLAttachmentURLKey).value_or("")});
  }
  return entries;
}

// From the last delivery, which has the most attachments, to the first.
void keepAll(Report& report, const std::string& folder) {
  const auto& deliveries = report.outcome.deliveries;
  try {
    for (auto each = deliveries.rbegin(); each != deliveries.rend(); ++each) {
      keepAttachments(each->content->attachments(), folder, report.keptPaths);
    }
  } catch (const std::filesystem::filesystem_error& error) {
    report.keepError = "--keep: " + error.path1().string() + ": " + error.code().message();
  }
}

bool isIncomplete(const Recording& recording) {
  return !recording.refused.empty() ||
         std::any_of(recording.requests.begin(), recording.requests.end(), [](const auto& request) {
           return request.outcome != RecordedRequest::Outcome::finished;
         });
}

int fail(int status, const std::string& message) {
  std::cerr << "morvelune: " << message << '\n';
  return status;
}

// Empty when a signal asked the process to end.
std::optional<Report> reportOn(const Payload& payload, const DeliverOptions& options,
                               const PrivateFolder& folder, const TerminationSignals& signals) {
  URLSessionOptions sessionOptions;
  sessionOptions.temporaryDirectory = folder.path();
  const auto session = makeLinuxURLSession(sessionOptions);
  const auto platform = makeLinuxPlatform(session, options.device);
  Inspection inspection = [&] {
    const InstalledPlatform installed(platform);
    return inspect(payload.content, payload.bytes);
  }();
  Recorder recorder(attachmentEntries(payload.content, inspection));
  const InstalledPlatform installed(recorder.decorate(*platform));
  auto outcome = deliver(payload.content, options.limits, recorder, *session, signals);
  if (!outcome) return std::nullopt;
  Report report{inspection.recognised, std::move(inspection.findings), std::move(*outcome), {}, {}};
  if (options.keep) keepAll(report, *options.keep);
  return report;
}

// Delivers, reports on standard output, and gives the exit status.
int run(const DeliverOptions& options) {
  const auto read = readPayload(options.payload);
  if (const auto* error = std::get_if<PayloadError>(&read)) {
    return fail(exitFailed, shown(options.payload) + ':' + describe(*error));
  }
  if (options.keep) {
    try {
      prepareKeepFolder(*options.keep);
    } catch (const std::filesystem::filesystem_error& error) {
      return fail(exitUsage, "--keep: " + shown(*options.keep) + ": " + error.code().message());
    }
  }
  std::string text;
  std::string log;
  std::string error;
  bool incomplete = false;
  {
    const TerminationSignals signals;
    const PrivateFolder folder;
    const auto report = reportOn(std::get<Payload>(read), options, folder, signals);
    if (!report) return exitFailed;  // not reached: the signal ends the process here
    text = options.json ? jsonReport(*report) : textReport(*report);
    incomplete = isIncomplete(report->outcome.recording);
    error = report->keepError;
    if (!options.json) {
      for (const std::string& line : report->outcome.recording.log) log += line + '\n';
    }
  }
  // Printed last, so that nothing is left behind however long the reader takes.
  std::cerr << log;
  std::cout << text;
  if (!error.empty()) return fail(exitFailed, shown(error));
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
