#include "tools/morvelune/TerminationSignals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace morvelune::tool {
namespace {

// A signal that is both ignored and held back would still make the descriptor readable.
bool isIgnored(int signal) {
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

}  // namespace

TerminationSignals::TerminationSignals() {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    if (!isIgnored(signal)) sigaddset(&held, signal);
  }
  descriptor_ = signalfd(-1, &held, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "signalfd");
  pthread_sigmask(SIG_BLOCK, &held, &previous_);
}

TerminationSignals::~TerminationSignals() {
  close(descriptor_);
  pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

bool TerminationSignals::haveCome() const {
  pollfd waiting{descriptor_, POLLIN, 0};
  return poll(&waiting, 1, 0) > 0;
}

}  // namespace morvelune::tool
