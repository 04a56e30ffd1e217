// What is kept is written to the file that was made for it, whatever happens to its name meanwhile.
// The linker puts the two functions below in the place of the system's.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <filesystem>

#include "morvelune/platform/UNNotificationAttachment.h"
#include "support/TemporaryDirectory.h"
#include "tools/morvelune/Keep.h"

namespace {
std::string victim;  // where a name of a file that is being made shall lead
}

extern "C" {
int __real_open(const char* path, int flags, ...);

// As across file systems.
int __wrap_link(const char*, const char*) {
  errno = EXDEV;
  return -1;
}

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const int descriptor = __real_open(path, flags, va_arg(arguments, unsigned));
  va_end(arguments);
  if (descriptor >= 0 && (flags & O_EXCL) != 0 && !victim.empty()) {
    unlink(path);
    EXPECT_EQ(symlink(victim.c_str(), path), 0);
  }
  return descriptor;
}
}

namespace morvelune::testing {
namespace {

namespace fs = std::filesystem;

TEST(KeepTest, WritesToNoFileThatItDidNotMake) {
  const TemporaryDirectory staged, kept, others;
  const auto attachment = std::make_shared<const UNNotificationAttachment>(
      "a", URL::fileURL(staged.write("staged", std::string(200000, 'x'))), "public.png");
  const auto keep = [&](bool isEnough) {
    std::map<std::string, std::string> paths;
    return tool::keepAttachments({attachment}, kept.path(), paths, [=] { return isEnough; });
  };
  victim = others.write("victim", "theirs");
  EXPECT_THROW(keep(false), fs::filesystem_error);
  EXPECT_EQ(contentsOf(victim), "theirs");
  EXPECT_TRUE(fs::is_symlink(kept.path() + "/1-a.png")) << "theirs, too";
  victim.clear();
  EXPECT_FALSE(keep(true));
  EXPECT_TRUE(keep(false));
  EXPECT_EQ(contentsOf(kept.path() + "/1-a-2.png"), std::string(200000, 'x'));
  EXPECT_EQ(kept.names().size(), 2) << "no half of a file";
}

}  // namespace
}  // namespace morvelune::testing
