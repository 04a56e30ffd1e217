// The subcommand "deliver": payload in, what a device would show out, over real HTTP.
#pragma once

#include <CLI/App.hpp>

namespace morvelune::tool {

// Declares the subcommand. When it is called it delivers, reports on standard output, and puts the
// exit status into `status`.
void addDeliverCommand(CLI::App& app, int& status);

}  // namespace morvelune::tool
