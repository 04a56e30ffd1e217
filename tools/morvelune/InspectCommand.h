// The subcommand "inspect": what a device would make of pushes, told without the network.
#pragma once

#include <CLI/App.hpp>

namespace morvelune::tool {

// Declares the subcommand. When it is called it inspects, reports on standard output, and puts the
// exit status into `status`.
void addInspectCommand(CLI::App& app, int& status);

}  // namespace morvelune::tool
