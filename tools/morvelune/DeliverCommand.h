// The subcommand "deliver": payload in, what a device would show out, over real HTTP.
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "morvelune/platform/linux/LinuxPlatform.h"
#include "tools/morvelune/Delivery.h"

namespace morvelune::tool {

struct DeliverOptions {
  std::string payload;                              // a file, or "-"
  Limits limits{.time = std::chrono::seconds(30)};  // what the platform gives an extension
  std::optional<std::string> keep;
  bool json = false;
  bool strict = false;
  DeviceProfile device;
};

// Declares the subcommand, which parsing fills in and which runs nothing by itself.
void addDeliverCommand(CLI::App& app, DeliverOptions& options);
// Delivers, reports on standard output, and gives the exit status.
[[nodiscard]] int deliverCommand(const DeliverOptions& options);

}  // namespace morvelune::tool
