// For LD_PRELOAD: makes one call of a program fail as on a machine that is short of something.
// FAIL_CALL tells which, as "write 3" for the third write(). FAIL_MARK is a file that exists once
// the call has failed.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// Whether this call of `name` is the one that fails.
bool fails(const char* name) {
  static std::atomic<int> calls = 0;
  static const std::string wanted = std::getenv("FAIL_CALL");
  const std::size_t space = wanted.find(' ');
  if (wanted.compare(0, space, name) != 0) return false;
  if (++calls != std::stoi(wanted.substr(space))) return false;
  return ::mkdir(std::getenv("FAIL_MARK"), 0700) == 0;
}

template <typename Function, typename... Arguments>
auto next(Function*, const char* name, Arguments... arguments) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name))(arguments...);
}

template <typename Result = int>
Result failed(int code) {
  errno = code;
  return -1;
}

}  // namespace

extern "C" {

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) noexcept {
  if (fails("pthread_create")) return EAGAIN;
  return next(&pthread_create, "pthread_create", thread, attributes, run, argument);
}

int socketpair(int family, int type, int protocol, int* ends) noexcept {
  if (fails("socketpair")) return failed(EMFILE);
  return next(&socketpair, "socketpair", family, type, protocol, ends);
}

int open(const char* path, int flags, ...) {
  if (fails("open")) return failed(EMFILE);
  using Open = int(const char*, int, mode_t);
  return reinterpret_cast<Open*>(dlsym(RTLD_NEXT, "open"))(path, flags, S_IRUSR | S_IWUSR);
}

int mkostemps(char* path, int suffix, int flags) {
  if (fails("open")) return failed(EMFILE);
  return next(&mkostemps, "mkostemps", path, suffix, flags);
}

ssize_t write(int file, const void* bytes, size_t count) {
  if (fails("write")) return failed<ssize_t>(ENOSPC);
  return next(&write, "write", file, bytes, count);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept {
  if (fails("rename")) return failed(ENOSPC);
  return next(&renameat2, "renameat2", fromFolder, from, toFolder, to, flags);
}

int remove(const char* path) noexcept {
  if (fails("remove")) return failed(EBUSY);
  return next(&remove, "remove", path);
}

}  // extern "C"
