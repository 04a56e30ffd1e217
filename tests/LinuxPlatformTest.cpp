// What the Linux services do beyond their contracts.
#include <gtest/gtest.h>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/linux/LinuxServices.h"
#include "support/LoopbackOrigin.h"
#include "support/TemporaryDirectory.h"

namespace {
int renameError = 0;  // what renameat2() fails with; 0 when it is the system's own
}

// Stands before the C library's, so that a test can say what the file system answers.
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
  if (renameError == 0) {
    return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
  }
  errno = renameError;
  return -1;
}

namespace morvelune::testing {
namespace {

// --- Files ---

class LinuxFiles : public ::testing::Test {
 protected:
  // Moves "a" to "b" where the file system answers `error`; gives code and description.
  std::string move(int error) {
    renameError = error;
    const auto failure = manager_->moveItem(at("a"), at("b"));
    renameError = 0;
    return failure ? std::to_string(failure->code) + " " + failure->localizedDescription : "moved";
  }
  [[nodiscard]] URL at(const std::string& name) const {
    return URL::fileURL(folder_.path() + "/" + name);
  }

  const TemporaryDirectory folder_;
  const std::shared_ptr<FileManager> manager_ = makeLinuxFileManager();
};

TEST_F(LinuxFiles, MovesWhereTheFileSystemCannotExcludeElseSaysWhyNot) {
  const std::string folder = folder_.path().substr(folder_.path().rfind('/') + 1);
  const std::string what = " “a” couldn’t be moved to “" + folder + "”";
  folder_.write("a", "source");
  EXPECT_EQ(move(EXDEV), "512" + what + " (Invalid cross-device link).");
  EXPECT_EQ(move(ENAMETOOLONG), "514" + what + " because the file name is invalid.");
  EXPECT_EQ(move(EINVAL), "moved");
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"b"});
  folder_.write("a", "other");
  EXPECT_EQ(move(ENOSYS), "516" + what + " because an item with the same name already exists.");
  EXPECT_EQ(manager_->contents(at("b")), Data::copyOf("source"));
}

TEST_F(LinuxFiles, MapsRegularFilesAndNeverWaits) {
  ASSERT_EQ(::mkfifo((folder_.path() + "/pipe").c_str(), 0600), 0);
  EXPECT_FALSE(manager_->contents(at("pipe")).has_value());
  EXPECT_FALSE(manager_->contents(URL::fileURL(folder_.path())).has_value());
  constexpr std::size_t farAboveAnyMemory = std::size_t{1} << 36;
  std::filesystem::resize_file(folder_.write("sparse", ""), farAboveAnyMemory);
  EXPECT_EQ(manager_->contents(at("sparse")).value_or(Data()).size(), farAboveAnyMemory);
}

TEST_F(LinuxFiles, UniqueStringsDifferAfterAFork) {
  constexpr std::size_t uuidLength = 36;
  (void)manager_->globallyUniqueString();  // so that there is a state to share
  const pid_t child = ::fork();
  const std::string next = manager_->globallyUniqueString();
  if (child == 0) {
    folder_.write("child", next.substr(0, uuidLength));
    ::_exit(0);
  }
  ::waitpid(child, nullptr, 0);
  constexpr char form[] =
      "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}-[0-9]+-[0-9A-F]{16}";
  EXPECT_TRUE(makeLinuxText()->matches(next, form)) << next;
  const Data ofChild = manager_->contents(at("child")).value();
  EXPECT_FALSE(ofChild == Data::copyOf(next.substr(0, uuidLength)));
}

// --- Device and locale ---

TEST(LinuxDevice, SeesTheFixedOriginAsTheScreenIsHeld) {
  const auto origin = [](std::optional<Size> size, int orientation) -> std::string {
    const auto device =
        makeLinuxDevice({.screen = size, .orientation = ScreenOrientation(orientation)});
    const auto point = device->mainScreen()->fixedOriginInCurrentSpace();
    return point ? std::to_string(int(point->x)) + "," + std::to_string(int(point->y)) : "none";
  };
  const char* const origins[] = {"none", "0,0", "812,375", "0,375", "812,0", "none"};
  for (int orientation = 0; orientation <= 5; ++orientation) {
    EXPECT_EQ(origin(Size{812, 375}, orientation), origins[orientation]);
  }
  EXPECT_EQ(origin(std::nullopt, 3), "0,1");  // away from zero though no size is known
  EXPECT_EQ(origin(std::nullopt, 4), "1,0");
}

// Country and languages as a fresh process with this environment reads them.
[[noreturn]] void printLocale(const char* environment) {
  ::setenv("LC_ALL", environment, 1);
  const auto locale = makeLinuxLocale({});
  const std::string country = locale->countryCode().value_or("none");
  const std::string upper = makeLinuxText()->uppercased("i");  // "İ" by Turkish rules
  makeLinuxSystemLog()->log("<%@ %@ %@>", {country, locale->preferredLanguages()->at(0), upper});
  ::_exit(0);
}

TEST(LinuxLocaleDeathTest, ReadsTheLocaleOfTheProcess) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::pair<const char*, const char*> cases[] = {{"fr_CH.UTF-8", "<CH fr-CH I>"},
                                                       {"fr", "<none fr I>"},
                                                       {"C", "<US en-US I>"},
                                                       {"tr_TR", "<TR tr-TR I>"},
                                                       {"zh_Hant_TW", "<TW zh-Hant-TW I>"}};
  for (const auto& [environment, line] : cases) {
    EXPECT_EXIT(printLocale(environment), ::testing::ExitedWithCode(0), line);
  }
}

// --- Main queue ---

bool isReadable(int descriptor) {
  pollfd polled{descriptor, POLLIN, 0};
  return ::poll(&polled, 1, 0) == 1;
}

TEST(LinuxMainQueue, IsReadableWhileTasksWait) {
  const auto queue = makeLinuxMainQueue();
  EXPECT_FALSE(isReadable(queue->descriptor()));
  queue->async([&queue] { EXPECT_TRUE(isReadable(queue->descriptor())); });
  queue->async([&queue] { queue->async([] {}); });
  for (const std::size_t tasks : {2, 1}) {
    EXPECT_TRUE(isReadable(queue->descriptor()));
    EXPECT_EQ(queue->drain(), tasks);
  }
  EXPECT_FALSE(isReadable(queue->descriptor()));
}

// --- System log ---

TEST(LinuxSystemLog, WritesALineInOnePiece) {
  int ends[2];  // of a socket that keeps each write apart
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
  const int standardError = ::dup(STDERR_FILENO);
  ::dup2(ends[1], STDERR_FILENO);
  makeLinuxSystemLog()->writeLine("a [é]");
  ::dup2(standardError, STDERR_FILENO);
  char line[64];
  EXPECT_EQ(std::string(line, ::read(ends[0], line, sizeof line)), "a [é]\n");
  for (const int descriptor : {standardError, ends[0], ends[1]}) ::close(descriptor);
}

// --- Platform ---

TEST(LinuxPlatform, SharesWhatBelongsToTheProcess) {
  const auto native = Platform::native();
  EXPECT_EQ(native, Platform::current());
  const auto own = makeLinuxPlatform({.device = {.country = "XK"}});
  EXPECT_EQ(own->notificationCenter, native->notificationCenter);
  EXPECT_EQ(own->mainQueue, linuxMainQueue());
  EXPECT_NE(own->urlSession, native->urlSession);
  EXPECT_EQ(own->locale->countryCode(), "XK");
}

// Leaves the process while a request is pending, whose completion uses the platform.
[[noreturn]] void exitWithPendingRequest(bool install) {
  static LoopbackOrigin origin;  // made first, so that it ends last
  const auto url = URL::parse(origin.serve("/", {.fate = Reply::Fate::silent}));
  if (install) Platform::install(makeLinuxPlatform());
  const auto completion = [](const auto&, const auto&, const auto& error) {
    const auto platform = Platform::current();
    platform->notificationCenter->post({"n", nullptr, std::nullopt});
    platform->mainQueue->async([] {});
    platform->systemLog->log("completed with [%@]", {std::to_string(error->code)});
  };
  Platform::current()->urlSession->dataTask(url, completion)->resume();
  std::exit(0);
}

TEST(LinuxPlatformDeathTest, EndsPendingRequestsAtExit) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (const bool install : {false, true}) {
    EXPECT_EXIT(exitWithPendingRequest(install), ::testing::ExitedWithCode(0),
                "completed with \\[-999\\]");
  }
}

}  // namespace
}  // namespace morvelune::testing
