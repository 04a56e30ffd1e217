// The subcommand "type": which media types files have, and what tells so.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace morvelune::tool {

struct TypeOptions {
  std::vector<std::string> files;
  bool json = false;
};

// Declares the subcommand, which parsing fills in and which runs nothing by itself.
CLI::App* addTypeCommand(CLI::App& app, TypeOptions& options);
// Looks at the files, reports on standard output, and gives the exit status.
[[nodiscard]] int typeCommand(const TypeOptions& options);

}  // namespace morvelune::tool
