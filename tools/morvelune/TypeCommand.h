// The subcommand "type": which media types files have, and what tells each.
#pragma once

#include <CLI/App.hpp>

namespace morvelune::tool {

// Declares the subcommand. When it is called it looks at the files, reports on standard output, and
// puts the exit status into `status`.
void addTypeCommand(CLI::App& app, int& status);

}  // namespace morvelune::tool
