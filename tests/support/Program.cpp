#include "support/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <system_error>

namespace morvelune::testing {
namespace {

using Names = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

}  // namespace

pid_t Program::start(Names arguments, const std::string& input) {
  started_ = Clock::now();
  const std::string in = streams_.write("in", input);
  // Whoever runs the tests may ignore signals, which the program would inherit.
  Names program{"env", "--default-signal", "TMPDIR=" + temporary_.path()};
  program.insert(program.end(), environment.begin(), environment.end());
  program.emplace_back(MORVELUNE_PATH);
  arguments.insert(arguments.begin(), program.begin(), program.end());
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, in.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, err_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  getrusage(RUSAGE_SELF, &own_);
  pid_t pid = -1;
  const int error = posix_spawnp(&pid, "env", &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  // Never a pid that is none: a signal to -1 would reach every process of the user.
  if (error != 0) throw std::system_error(error, std::generic_category(), "env");
  return pid;
}

Ended Program::wait(pid_t pid) {
  Ended ended;
  int status = 0;
  rusage usage{};
  EXPECT_EQ(wait4(pid, &status, 0, &usage), pid);
  ended.seconds = std::chrono::duration<double>(Clock::now() - started_).count();
  ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  ended.out = contentsOf(out_);
  ended.err = contentsOf(err_);
  ended.peakKilobytes = usage.ru_maxrss;
  ended.makersKilobytes = own_.ru_maxrss;
  EXPECT_EQ(temporary_.names(), Names{});
  return ended;
}

Ended Program::run(Names arguments, const std::string& input) {
  return wait(start(std::move(arguments), input));
}

}  // namespace morvelune::testing
