// measure COMMAND ARGUMENT...: runs it with its output thrown away and prints, on one line, its
// seconds on the clock and of the processor, its peak memory in bytes and its exit status, which
// is less than 0 for a signal. A program of its own, because a process begins with the peak of the
// one that starts it on its account, and this one's is small.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: measure COMMAND ARGUMENT...\n", stderr);
    return 2;
  }
  const auto begun = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execvp(argv[1], argv + 1);
    _exit(127);
  }
  int status = 0;
  rusage used{};
  if (child < 0 || wait4(child, &status, 0, &used) != child) {
    std::perror("measure");
    return 1;
  }
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begun;
  const auto seconds = [](const timeval& time) { return time.tv_sec + time.tv_usec / 1e6; };
  std::printf("%.6f %.6f %ld %d\n", wall.count(), seconds(used.ru_utime) + seconds(used.ru_stime),
              used.ru_maxrss * 1024, WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status));
}
