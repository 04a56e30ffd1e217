// morvelune: shows what a device would make of a push.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "tools/morvelune/DeliverCommand.h"
#include "tools/morvelune/ExitStatus.h"
#include "tools/morvelune/InspectCommand.h"
#include "tools/morvelune/TextTable.h"
#include "tools/morvelune/TypeCommand.h"

namespace {

using namespace morvelune::tool;

// The last one first, as the parser takes them. "--name=" gives an empty text, which the parser
// would look for in the argument behind it.
std::vector<std::string> argumentsOf(int argc, char** argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    std::string argument = argv[i];
    if (argument.starts_with("--") && argument.ends_with('=')) {
      argument.pop_back();
      arguments.emplace_back();
    }
    arguments.push_back(std::move(argument));
  }
  return arguments;
}

// The next file or socket would take the place of a standard stream that the process was started
// without. What takes it instead can be used as little as a closed one.
void fillStandardDescriptors() {
  for (const int each : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(each, F_GETFD) >= 0) continue;
    if (open("/dev/null", each == STDIN_FILENO ? O_WRONLY : O_RDONLY) != each)
      std::_Exit(exitFailed);
  }
}

int run(int argc, char** argv) {
  CLI::App app{"Shows what a device would make of a push before it is sent.", "morvelune"};
  app.set_version_flag("--version", "morvelune " MORVELUNE_VERSION);
  app.failure_message([](const CLI::App* failed, const CLI::Error& error) {
    return "morvelune: " + shown(error.what()) + "\nSee: " + failed->get_name() + " --help\n";
  });
  app.require_subcommand(1);
  int status = exitSuccess;
  addDeliverCommand(app, status);
  addInspectCommand(app, status);
  addTypeCommand(app, status);

  try {
    app.parse(argumentsOf(argc, argv));     // which calls the subcommand
  } catch (const CLI::ParseError& error) {  // --help and --version, too
    return app.exit(error) == 0 ? exitSuccess : exitUsage;
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  fillStandardDescriptors();
  // A reader that goes away must not end the process before its files are removed.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    const int status = run(argc, argv);
    if (std::cout.flush()) return status;
    std::cerr << "morvelune: standard output cannot be written\n";
  } catch (const std::exception& error) {
    std::cerr << "morvelune: " << shown(error.what()) << '\n';
  }
  return exitFailed;
}
