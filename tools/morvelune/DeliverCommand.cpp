#include "tools/morvelune/DeliverCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "morvelune/MVLConstants.h"
#include "morvelune/MVLPushHelpers.h"
#include "tools/morvelune/ExitStatus.h"
#include "tools/morvelune/Keep.h"
#include "tools/morvelune/Payload.h"
#include "tools/morvelune/PrivateFolder.h"
#include "tools/morvelune/Report.h"

namespace morvelune::tool {
namespace {

// Readers of options. Each throws std::invalid_argument for a text that it cannot read.

// Decimal digits with at most one point, and no more than `most`: no sign, exponent, "inf" or hex.
double decimal(const std::string& text, double most) {
  const bool wellFormed = text.find_first_of("0123456789") != std::string::npos &&
                          text.find_first_not_of("0123456789.") == std::string::npos &&
                          std::count(text.begin(), text.end(), '.') <= 1;
  const double value = wellFormed ? std::strtod(text.c_str(), nullptr) : -1;
  if (value < 0 || value > most) {
    throw std::invalid_argument("\"" + text + "\" is no number from 0 to " +
                                std::to_string(static_cast<long>(most)));
  }
  return value;
}

std::chrono::duration<double> seconds(const std::string& text) {
  constexpr double day = 86400;  // anything longer is a slip of the hand
  return std::chrono::duration<double>(decimal(text, day));
}

Size screenSize(const std::string& text) {
  constexpr double largest = 100000;  // points; far above any screen
  const std::size_t x = text.find('x');
  if (x == std::string::npos) throw std::invalid_argument("\"" + text + "\" is no WxH");
  return {decimal(text.substr(0, x), largest), decimal(text.substr(x + 1), largest)};
}

ScreenOrientation screenOrientation(const std::string& text) {
  using enum ScreenOrientation;
  constexpr std::array<std::pair<std::string_view, ScreenOrientation>, 5> names{
      {{"portrait", portrait},
       {"portrait-upside-down", portraitUpsideDown},
       {"landscape-right", landscapeRight},
       {"landscape-left", landscapeLeft},
       {"unknown", unknown}}};
  for (const auto& [name, orientation] : names) {
    if (text == name) return orientation;
  }
  throw std::invalid_argument("\"" + text + "\" is no orientation");
}

// An empty text is an empty list.
std::vector<std::string> languageList(const std::string& text) {
  std::vector<std::string> languages;
  std::istringstream rest(text);
  for (std::string language; std::getline(rest, language, ',');) languages.push_back(language);
  return languages;
}

struct ValueOption {
  const char* name;
  const char* typeName;
  const char* description;
  void (*read)(DeliverOptions&, const std::string&);
};

constexpr ValueOption valueOptions[] = {
    {"--time-limit", "SECONDS", "When the extension's time expires [30]",
     [](auto& options, const auto& text) { options.limits.time = seconds(text); }},
    {"--linger", "SECONDS", "How long to wait for a second delivery [0]",
     [](auto& options, const auto& text) { options.limits.linger = seconds(text); }},
    {"--keep", "DIR", "Keep delivered attachments in this folder",
     [](auto& options, const auto& text) { options.keep = text; }},
    {"--idfv", "TEXT", "The device's identifier for the vendor",
     [](auto& options, const auto& text) { options.device.identifierForVendor = text; }},
    {"--screen", "WxH", "The screen's size in points, such as 375x812",
     [](auto& options, const auto& text) { options.device.screen = screenSize(text); }},
    {"--orientation", "NAME",
     "portrait, portrait-upside-down, landscape-right, landscape-left or unknown",
     [](auto& options, const auto& text) { options.device.orientation = screenOrientation(text); }},
    {"--country", "CC", "The country of the user's locale",
     [](auto& options, const auto& text) { options.device.country = text; }},
    {"--languages", "A,B", "The user's languages, most preferred first",
     [](auto& options, const auto& text) { options.device.languages = languageList(text); }},
};

// Puts a platform in use while it lives.
class InstalledPlatform {
 public:
  explicit InstalledPlatform(std::shared_ptr<const Platform> platform) {
    Platform::install(std::move(platform));
  }
  ~InstalledPlatform() { Platform::install(nullptr); }
  InstalledPlatform(const InstalledPlatform&) = delete;
  InstalledPlatform& operator=(const InstalledPlatform&) = delete;
};

// Of the payload's entries, in order, as the extension names their attachments.
std::vector<std::string> attachmentIdentifiers(const Dictionary& payload) {
  std::vector<std::string> identifiers;
  for (const Value& entry : payload.array(MVLPayloadAttachmentsKey).value_or(Array())) {
    identifiers.push_back(entry.dictionary()
                              .value_or(Dictionary())
                              .string(MVLAttachmentIDKey)
                              .value_or("mvl.default.id"));
  }
  return identifiers;
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
std::optional<Report> reportOn(const Dictionary& payload, const DeliverOptions& options,
                               const PrivateFolder& folder, const TerminationSignals& signals) {
  LinuxOptions linuxOptions;
  linuxOptions.device = options.device;
  linuxOptions.session.temporaryDirectory = folder.path();
  const auto platform = makeLinuxPlatform(linuxOptions);
  Recorder recorder(attachmentIdentifiers(payload));
  const InstalledPlatform installed(recorder.decorate(*platform, !options.json));
  auto outcome = deliver(payload, options.limits, recorder, signals);
  if (!outcome) return std::nullopt;
  Report report{MVLPushHelpers::isMorveluneNotification(payload), std::move(*outcome), {}};
  if (options.keep) {
    report.keptPaths =
        keepAttachments(report.outcome.deliveries.back().content->attachments(), *options.keep);
  }
  return report;
}

}  // namespace

void addDeliverCommand(CLI::App& app, DeliverOptions& options) {
  CLI::App* deliver = app.add_subcommand("deliver", "Deliver a push and report what is shown");
  deliver->add_option("PAYLOAD", options.payload, "The push's JSON; \"-\" is standard input")
      ->required()
      ->type_name("");
  for (const ValueOption& option : valueOptions) {
    const auto read = [&options, &option](const std::string& text) {
      try {
        option.read(options, text);
      } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError(option.name, error.what());
      }
    };
    deliver->add_option_function<std::string>(option.name, read, option.description)
        ->type_name(option.typeName);
  }
  deliver->add_flag("--json", options.json, "Report as one JSON object");
  deliver->add_flag("--strict", options.strict,
                    "Exit with 3 when a request failed, a type was unknown or an attachment was "
                    "refused");
}

int deliverCommand(const DeliverOptions& options) {
  const auto read = readPayload(options.payload);
  if (const auto* error = std::get_if<PayloadError>(&read)) {
    return fail(exitFailed, options.payload + ':' + std::to_string(error->line) + ':' +
                                std::to_string(error->column) + ": " + error->message);
  }
  if (options.keep) {
    try {
      prepareKeepFolder(*options.keep);
    } catch (const std::filesystem::filesystem_error& error) {
      return fail(exitUsage, "--keep: " + *options.keep + ": " + error.code().message());
    }
  }
  std::string text;
  bool incomplete = false;
  {
    const TerminationSignals signals;
    const PrivateFolder folder;
    const auto report = reportOn(std::get<Dictionary>(read), options, folder, signals);
    if (!report) return exitFailed;  // not reached: the signal ends the process here
    text = options.json ? jsonReport(*report) : textReport(*report);
    incomplete = isIncomplete(report->outcome.recording);
  }
  // Printed last, so that nothing is left behind however long the reader takes.
  std::cout << text;
  return options.strict && incomplete ? exitIncomplete : exitDelivered;
}

}  // namespace morvelune::tool
