// Command-line options that several subcommands have.
#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <string>

#include "morvelune/platform/linux/LinuxPlatform.h"

namespace morvelune::tool {

// Adds an option whose text `read` takes; it throws std::invalid_argument for one that it cannot
// read, which is reported as wrong usage.
void addOption(CLI::App& app, const char* name, const std::function<void(const std::string&)>& read,
               const char* description, const char* typeName);

// Decimal digits with at most one point, and no more than `most`: no sign, exponent, "inf" or hex.
// Throws std::invalid_argument for any other text.
[[nodiscard]] double decimal(const std::string& text, double most);

// The options that describe the device.
void addDeviceOptions(CLI::App& app, DeviceProfile& device);

}  // namespace morvelune::tool
