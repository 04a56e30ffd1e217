// What the Linux services do beyond their contracts.
#include <gtest/gtest.h>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "detection/MediaTypes.h"
#include "morvelune/MVLURLHelpers.h"
#include "morvelune/UIScreenMorvelune.h"
#include "platform/linux/AcceptedMedia.h"
#include "platform/linux/LinuxServices.h"
#include "support/Eventually.h"
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

TEST_F(LinuxFiles, AUniqueStringTellsTheProcessAndCounts) {
  const std::string form = "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}-" +
                           std::to_string(::getpid()) + "-[0-9A-F]{16}";
  EXPECT_TRUE(makeLinuxText()->matches(manager_->globallyUniqueString(), form));
}

// --- Attachments ---

// The types and extensions of a table, but for the empty ones.
std::set<std::string> typesAndExtensions(const auto& table) {
  std::set<std::string> all;
  for (const auto& type : table) {
    for (const std::string_view each : type.extensions) {
      if (!each.empty()) all.insert(std::string(type.identifier).append(" ").append(each));
    }
  }
  return all;
}

TEST(LinuxNotificationAttachments, TakeWhatTheLibraryKnowsAndLittleMore) {
  std::set<std::string> more = typesAndExtensions(acceptedMedia);
  for (const std::string& each : typesAndExtensions(detection::mediaTypes())) {
    EXPECT_EQ(more.erase(each), 1U) << each << " would be refused";
  }
  const std::set<std::string> expected{"public.jpeg jpe", "public.mpeg mpe",
                                       "public.mpeg-2-video m2v"};
  EXPECT_EQ(more, expected);
}

// --- Device and locale ---

TEST(LinuxDevice, IsHeldAsItsProfileSays) {
  for (const auto& size : {std::optional(Size{812, 375}), std::optional<Size>()}) {
    for (int code = 0; code <= 4; ++code) {
      const auto orientation = UIInterfaceOrientation(code);
      const auto device = makeLinuxDevice({.screen = size, .orientation = orientation});
      EXPECT_EQ(mvl_currentOrientation(device->mainScreen()), orientation);
    }
  }
}

// Country and languages as a fresh process with this environment reads them.
[[noreturn]] void printLocale(const char* environment) {
  ::setenv("LC_ALL", environment, 1);
  const auto locale = makeLinuxLocale({});
  const std::string country = locale->countryCode().value_or("none");
  makeLinuxSystemLog()->log("<%@ %@>", {country, locale->preferredLanguages()->at(0)});
  ::_exit(0);
}

TEST(LinuxLocaleDeathTest, ReadsTheLocaleOfTheProcess) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::pair<const char*, const char*> cases[] = {{"fr_CH.UTF-8", "<CH fr-CH>"},
                                                       {"fr", "<none fr>"},
                                                       {"C", "<US en-US>"},
                                                       {"zh_Hant_TW", "<TW zh-Hant-TW>"}};
  for (const auto& [environment, line] : cases) {
    EXPECT_EXIT(printLocale(environment), ::testing::ExitedWithCode(0), line);
  }
}

// In this locale "I" has no "i" as its lower case, and a comma stands before decimals.
TEST(LinuxLocaleDeathTest, AddressesAreReadAndFilledAlikeInEveryLocale) {
  const TemporaryDirectory locales;
  const std::string turkish = locales.path() + "/tr_TR.ISO-8859-9";
  ASSERT_EQ(std::system(("localedef -i tr_TR -f ISO-8859-9 " + turkish).c_str()), 0);
  const auto readFileURL = [&locales] {
    ::setenv("LOCPATH", locales.path().c_str(), 1);
    if (std::setlocale(LC_ALL, "tr_TR.ISO-8859-9") == nullptr) ::_exit(2);
    const auto filled = MVLURLHelpers::filledURL("|n|", Dictionary{{"n", 2.5}});
    ::_exit(URL::parse("FILE:///a")->isFileURL() && filled == "2.5" ? 0 : 1);
  };
  EXPECT_EXIT(readFileURL(), ::testing::ExitedWithCode(0), "");
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

TEST(LinuxPlatform, AForkedChildMayExitWhileRequestsRun) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers have locks of their own, which a child finds as they were held";
#endif
  const TemporaryDirectory folder, own;
  LoopbackOrigin origin;
  const std::string stall = origin.serve("/", {.body = "body", .fate = Reply::Fate::stall});
  auto session = makeLinuxURLSession({.temporaryDirectory = folder.path()});
  session->downloadTask(URL::parse(stall), [](auto...) {})->resume();
  EXPECT_TRUE(eventually([&folder] { return !folder.names().empty(); }));
  for (int i = 0; i < 20; ++i) {
    const pid_t child = ::fork();
    if (child == 0) {
      ::alarm(10);
      session.reset();
      session = makeLinuxURLSession({.temporaryDirectory = own.path()});
      session->downloadTask(URL::parse(stall), [](auto...) {})->resume();
      std::exit(eventually([&own] { return !own.names().empty(); }) ? 0 : 1);
    }
    session->dataTask(URL::parse(stall), [](auto...) {})->resume();
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(folder.names().size(), 1U) << "a child removed the file";
  EXPECT_EQ(own.names().size(), 0U) << "a child did not end the session that it made";
}

}  // namespace
}  // namespace morvelune::testing
