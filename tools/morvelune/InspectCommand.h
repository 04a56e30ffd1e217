// The subcommand "inspect": what a device would make of pushes, told without the network.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "morvelune/platform/linux/LinuxPlatform.h"

namespace morvelune::tool {

struct InspectOptions {
  std::vector<std::string> payloads;  // files, or "-"
  bool json = false;
  bool jsonLines = false;  // instead of payloads: one a line from standard input
  bool strict = false;
  DeviceProfile device;
};

// Declares the subcommand, which parsing fills in and which runs nothing by itself.
CLI::App* addInspectCommand(CLI::App& app, InspectOptions& options);
// Inspects, reports on standard output, and gives the exit status.
[[nodiscard]] int inspectCommand(const InspectOptions& options);

}  // namespace morvelune::tool
