#include "tools/morvelune/InspectCommand.h"

#include <unistd.h>

#include <CLI/Error.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "morvelune/platform/linux/LinuxPlatform.h"
#include "tools/morvelune/ExitStatus.h"
#include "tools/morvelune/InspectionReport.h"
#include "tools/morvelune/InstalledPlatform.h"
#include "tools/morvelune/Json.h"
#include "tools/morvelune/LineReader.h"
#include "tools/morvelune/Options.h"
#include "tools/morvelune/Payload.h"
#include "tools/morvelune/Progress.h"
#include "tools/morvelune/TextTable.h"

namespace morvelune::tool {
namespace {

using nlohmann::ordered_json;

constexpr char standardInput[] = "-";

struct InspectOptions {
  std::vector<std::string> payloads;  // files, or "-"
  bool json = false;
  bool jsonLines = false;  // instead of payloads: one a line from standard input
  bool strict = false;
  DeviceProfile device;
};

// The status of a run: unreadable input weighs more than findings.
int worse(int left, int right) {
  for (const int status : {exitFailed, exitFaulty}) {
    if (left == status || right == status) return status;
  }
  return exitSuccess;
}

int statusOf(const Findings& findings, bool strict) {
  return findings.errors() + (strict ? findings.warnings() : 0) > 0 ? exitFaulty : exitSuccess;
}

int inspectFile(const std::string& file, const InspectOptions& options) {
  const auto read = readPayload(file);
  if (const auto* error = std::get_if<PayloadError>(&read)) {
    std::cerr << "morvelune: " << shown(file) << ':' << shown(describe(*error)) << '\n';
    return exitFailed;
  }
  const auto& payload = std::get<Payload>(read);
  const Inspection inspection = inspect(payload.content, payload.bytes);
  std::cout << (options.json ? dump(jsonReport({{"file", file}}, inspection), 2) + '\n'
                             : textReport(file, inspection));
  return statusOf(inspection.findings, options.strict);
}

int inspectFiles(const InspectOptions& options) {
  int status = exitSuccess;
  for (const std::string& file : options.payloads) {
    if (!options.json && &file != &options.payloads.front()) std::cout << '\n';
    status = worse(status, inspectFile(file, options));
  }
  return status;
}

// The answer to one line of standard input, with a status.
struct Answer {
  ordered_json json;
  int status = exitSuccess;
};

Answer answerTo(const std::string& line, std::size_t number, const InspectOptions& options) {
  ordered_json head{{"file", standardInput}, {"line", number}};
  auto parsed = parsePayload(line);
  if (auto* error = std::get_if<PayloadError>(&parsed)) {
    error->line = number;
    head["error"] = describe(*error);
    return {std::move(head), exitFailed};
  }
  const auto& payload = std::get<Payload>(parsed);
  const Inspection inspection = inspect(payload.content, payload.bytes);
  return {jsonReport(std::move(head), inspection), statusOf(inspection.findings, options.strict)};
}

// Answers are gathered and written before the tool may have to wait for input: in few pieces when
// there is much, and at once in a pipe that is fed line by line.
int inspectLines(const InspectOptions& options) {
  constexpr std::size_t muchOutput = 1 << 16;
  const bool isSharedTerminal = isatty(STDOUT_FILENO) != 0;
  int status = exitSuccess;
  std::size_t count = 0;
  std::string answers;
  Progress progress;
  const auto write = [&] {
    if (isSharedTerminal) progress.clear();
    std::cout << answers << std::flush;
    answers.clear();
    progress.show(count);
  };
  LineReader lines(STDIN_FILENO, maximumPayloadBytes, write);
  for (std::string line; std::cout && lines.next(line);) {
    const Answer answer = answerTo(line, ++count, options);
    status = worse(status, answer.status);
    answers += dump(answer.json) + '\n';
    if (answers.size() > muchOutput) write();
  }
  write();
  return status;
}

// Inspects, reports on standard output, and gives the exit status.
int run(const InspectOptions& options) {
  LinuxOptions linuxOptions;
  linuxOptions.device = options.device;
  const InstalledPlatform installed(makeLinuxPlatform(linuxOptions));
  return options.jsonLines ? inspectLines(options) : inspectFiles(options);
}

}  // namespace

void addInspectCommand(CLI::App& app, int& status) {
  const auto options = std::make_shared<InspectOptions>();
  CLI::App* inspect = app.add_subcommand("inspect", "Check pushes without the network");
  CLI::Option* payloads =
      inspect->add_option("PAYLOAD", options->payloads, "Pushes' JSON; \"-\" is standard input")
          ->type_name("");
  CLI::Option* json = inspect->add_flag(
      "--json", options->json, "Report as JSON, an object per payload, one after the other");
  inspect
      ->add_flag("--jsonl", options->jsonLines,
                 "Read a payload a line from standard input and write an object a line; a line "
                 "that cannot be read, an empty one too, gets one with \"error\"")
      ->excludes(payloads)
      ->excludes(json);
  inspect->add_flag("--strict", options->strict, "Let warnings count as errors");
  addDeviceOptions(*inspect, options->device);
  inspect->footer(
      "Exit status: 0 no errors found, 1 input that cannot be read (which outweighs 3), 2 wrong "
      "usage, 3 errors found.");
  inspect->callback([options, &status] {
    if (options->payloads.empty() && !options->jsonLines) throw CLI::RequiredError("PAYLOAD");
    status = run(*options);
  });
}

}  // namespace morvelune::tool
