#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

// Writes to standard error. What cannot be written is dropped: a log has nowhere to complain.
class LinuxSystemLog : public SystemLog {
 public:
  void writeLine(const std::string& line) override {
    // In one write, if the system takes it whole, so that lines of several threads do not mix.
    const std::string text = line + '\n';
    std::string_view rest = text;
    while (!rest.empty()) {
      const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
      if (written < 0 && errno != EINTR) return;
      if (written > 0) rest.remove_prefix(static_cast<std::size_t>(written));
    }
  }
};

}  // namespace

std::shared_ptr<SystemLog> makeLinuxSystemLog() {
  return std::make_shared<LinuxSystemLog>();
}

}  // namespace morvelune
