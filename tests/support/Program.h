// Runs the built command-line program.
//
//   Program morvelune;
//   const Ended ended = morvelune.run({"type", "photo.png"});
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <chrono>
#include <nlohmann/json.hpp>

#include "support/TemporaryDirectory.h"

namespace morvelune::testing {

struct Ended {
  int status = -1;  // the exit status, or less than 0: the signal
  std::string out;
  std::string err;
  double seconds = 0;
  long peakKilobytes = 0;
  long makersKilobytes =
      0;  // what that is at least: the peak of this process as it started the other

  [[nodiscard]] nlohmann::ordered_json report() const { return nlohmann::ordered_json::parse(out); }
};

// One run at a time. Each has a folder for temporary files, which must be empty again afterwards.
class Program {
 public:
  // Starts it with `input` on standard input.
  pid_t start(std::vector<std::string> arguments, const std::string& input = "");
  [[nodiscard]] Ended wait(pid_t pid);
  [[nodiscard]] Ended run(std::vector<std::string> arguments, const std::string& input = "");

  // What its environment has beside the own one, as "NAME=text".
  std::vector<std::string> environment;

  // The names in its folder for temporary files.
  [[nodiscard]] std::vector<std::string> temporaryNames() const { return temporary_.names(); }
  [[nodiscard]] const std::string& temporaryPath() const { return temporary_.path(); }

 private:
  TemporaryDirectory streams_;
  TemporaryDirectory temporary_;
  std::string out_ = streams_.path() + "/out";
  std::string err_ = streams_.path() + "/err";
  std::chrono::steady_clock::time_point started_;
  rusage own_{};
};

}  // namespace morvelune::testing
