#include "support/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string_view>

namespace morvelune::testing {
namespace {

using Names = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

std::vector<char*> pointers(Names& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

std::string contentsOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

pid_t Program::start(Names arguments, const std::string& input) {
  started_ = Clock::now();
  const std::string in = streams_.write("in", input);
  arguments.insert(arguments.begin(), MORVELUNE_PATH);
  Names variables{"TMPDIR=" + temporary_.path()};
  for (char** each = environ; *each != nullptr; ++each) {
    if (!std::string_view(*each).starts_with("TMPDIR=")) variables.emplace_back(*each);
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, in.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, isFull_ ? "/dev/full" : out_.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, err_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t pid = -1;
  EXPECT_EQ(posix_spawn(&pid, MORVELUNE_PATH, &actions, nullptr, pointers(arguments).data(),
                        pointers(variables).data()),
            0);
  posix_spawn_file_actions_destroy(&actions);
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
  EXPECT_EQ(temporary_.names(), Names{});
  return ended;
}

Ended Program::run(Names arguments, const std::string& input) {
  return wait(start(std::move(arguments), input));
}

}  // namespace morvelune::testing
