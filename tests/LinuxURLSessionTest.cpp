#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <future>
#include <thread>

#include "platform/linux/LinuxServices.h"
#include "support/Endings.h"
#include "support/LoopbackOrigin.h"
#include "support/TemporaryDirectory.h"

namespace {
std::atomic<bool> lookupHangs = false;
}

// Name lookups of the whole program: none leaves the machine, and one hangs while the test says.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                           addrinfo** result) {
  const std::string host = name != nullptr ? name : "";
  if (host == "hanging.example") {
    while (lookupHangs) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  if (host.ends_with(".example")) return EAI_NONAME;
  static const auto real =
      reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return real(name, service, hints, result);
}

namespace morvelune::testing {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr std::int64_t bound = 10000;
// 20,000 zeros, twice the bound, in 54 bytes.
constexpr std::string_view gzippedZeros(
    "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xed\xc1\x31\x01\x00\x00\x00\xc2\xa0\xf5\x4f\x6d\x0d"
    "\x0f\xa0\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x78\x30"
    "\x02\x53\x2f\x97\x20\x4e\x00\x00",
    54);

// The limit on the size of files that this process may write, for as long as it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

class LinuxURLSession : public ::testing::Test {
 protected:
  // No request may take the environment's proxy.
  static void SetUpTestSuite() { setenv("http_proxy", "http://127.0.0.1:9", 1); }

  static std::shared_ptr<URLSession> makeSession(const std::string& folder) {
    return makeLinuxURLSession({.idleTimeout = 1s,
                                .maximumRedirects = 3,
                                .maximumDataBytes = bound,
                                .maximumDownloadBytes = bound,
                                .temporaryDirectory = folder});
  }

  // One data task, or one download, to its end.
  Ending get(const std::string& url) {
    session->dataTask(URL::parse(url), endings.ofData(url))->resume();
    return endings.wait(++ended).at(url);
  }
  Ending download(URLSession& from, const std::string& url) {
    from.downloadTask(URL::parse(url), endings.ofDownload(url + " download"))->resume();
    return endings.wait(++ended)[url + " download"];
  }

  TemporaryDirectory folder;
  LoopbackOrigin origin;
  Endings endings{makeLinuxFileManager()};
  std::size_t ended = 0;
  std::shared_ptr<URLSession> session = makeSession(folder.path());
};

TEST_F(LinuxURLSession, FailsAsThePlatformDoes) {
  using Fate = Reply::Fate;
  std::map<std::string, int> wanted = {
      {"http://127.0.0.1:" + std::to_string(LoopbackOrigin::closedPort()),
       NSURLErrorCannotConnectToHost},
      {"https://127.0.0.1:" + std::to_string(origin.port()), NSURLErrorSecureConnectionFailed},
      {"http://unknown.example/", NSURLErrorCannotFindHost},
      {"http:", NSURLErrorUnsupportedURL},
      {"http://127.0.0.1:port/", NSURLErrorUnsupportedURL},
      {"http://127.0.0.1/" + std::string(9'000'000, 'a'), NSURLErrorUnsupportedURL},
  };
  const std::pair<int, Reply> replies[] = {
      {NSURLErrorNetworkConnectionLost, {.body = "abcdef", .fate = Fate::reset}},
      {NSURLErrorNetworkConnectionLost, {.body = "abcdef", .fate = Fate::cutShort}},
      {NSURLErrorBadServerResponse, {.body = "not HTTP\r\n\r\n", .fate = Fate::headless}},
      {NSURLErrorTimedOut, {.body = "abcdef", .fate = Fate::silent}},
      {NSURLErrorTimedOut, {.body = "abcdef", .fate = Fate::stall}},
      {NSURLErrorDataLengthExceedsMaximum, {.bodySize = bound + 1}},
      {NSURLErrorDataLengthExceedsMaximum,
       {.headers = {{"Connection", "close"}}, .bodySize = bound + 1}},
      {NSURLErrorDataLengthExceedsMaximum,
       {.headers = {{"Content-Encoding", "gzip"}}, .body = std::string(gzippedZeros)}},
      {NSURLErrorBadServerResponse,
       {.headers = {{"Content-Encoding", "gzip"}}, .body = "not gzip"}},
      {NSURLErrorHTTPTooManyRedirects, {.status = 302, .headers = {{"Location", "/again"}}}},
      {NSURLErrorUnsupportedURL,
       {.status = 302, .headers = {{"Location", "file:///etc/hostname"}}}},
      {NSURLErrorUnsupportedURL, {.status = 302, .headers = {{"Location", "ftp://127.0.0.1/a"}}}},
  };
  origin.serve("/again", {.status = 302, .headers = {{"Location", "/again"}}});
  for (const auto& [code, reply] : replies) {
    const std::string path = "/reply/" + std::to_string(wanted.size());
    origin.serve(path, reply);
    wanted[origin.url(path)] = code;
  }
  const auto start = steady_clock::now();
  for (const auto& [url, code] : wanted) {
    session->dataTask(URL::parse(url), endings.ofData("data " + url))->resume();
    session->downloadTask(URL::parse(url), endings.ofDownload("file " + url))->resume();
  }
  const auto all = endings.wait(2 * wanted.size());
  EXPECT_LT(steady_clock::now() - start, 4s) << "the idle time-out is one second";
  for (const auto& [url, code] : wanted) {
    for (const char* kind : {"data ", "file "}) {
      const std::string name = (kind + url).substr(0, 80);
      const auto ending = all.find(kind + url);
      ASSERT_NE(ending, all.end()) << name;
      EXPECT_EQ(ending->second.calls, 1) << name;
      EXPECT_FALSE(ending->second.body || ending->second.location || ending->second.response);
      ASSERT_TRUE(ending->second.error) << name;
      EXPECT_EQ(ending->second.error->domain, NSURLErrorDomain);
      EXPECT_EQ(ending->second.error->code, code) << name;
      EXPECT_FALSE(ending->second.error->localizedDescription.empty()) << name;
    }
  }
  session->invalidateAndCancel();
  EXPECT_TRUE(folder.names().empty()) << "a partial file was left behind";
}

TEST_F(LinuxURLSession, TakesWhatIsWithinTheBounds) {
  origin.serve("/most", {.bodySize = bound});
  origin.serve("/unsized", {.headers = {{"Connection", "close"}}, .bodySize = bound});
  origin.serve("/empty", {});
  // In all longer than the idle time-out, but never silent for so long.
  origin.serve("/r1", {.status = 302, .headers = {{"Location", "/r2"}}, .delay = 600ms});
  origin.serve("/r2", {.status = 302, .headers = {{"Location", "/r3"}}, .delay = 600ms});
  origin.serve("/r3", {.status = 302, .headers = {{"Location", "/empty"}}, .delay = 600ms});
  const std::map<std::string, std::size_t> sizes = {
      {"/most", bound}, {"/unsized", bound}, {"/empty", 0}};
  for (const auto& [path, size] : sizes) {
    EXPECT_EQ(get(origin.url(path)).body, std::string(size, '\0')) << path;
    EXPECT_EQ(download(*session, origin.url(path)).body, std::string(size, '\0')) << path;
  }
  EXPECT_EQ(get(origin.url("/r1")).body, "");
}

TEST_F(LinuxURLSession, SendsThePlainRequest) {
  origin.serve("/go", {.status = 301,
                       .headers = {{"Location", "/d/../there%20.png"}, {"Set-Cookie", "k=v"}},
                       .body = "moved"});
  origin.serve("/d/../there%20.png", {.body = "here"});
  origin.serve("/one/slash.png", {.body = "slash"});
  const Ending redirected = get(origin.url("/go?q=1"));
  EXPECT_EQ(redirected.body, "here");
  EXPECT_EQ(redirected.response->suggestedFilename, "there .png") << "that of the final address";
  const std::string oneSlash = "http:/127.0.0.1:" + std::to_string(origin.port());
  EXPECT_EQ(get(oneSlash + "/one/slash.png").body, "slash");

  const auto requests = origin.requests();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[0].target, "/go?q=1");
  EXPECT_EQ(requests[1].header("cookie"), "k=v") << "a cookie lives within its task";
  EXPECT_EQ(requests[2].header("cookie"), std::nullopt) << "and no longer";
  for (const ReceivedRequest& request : requests) {
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.header("user-agent"), "MorveluneExtension/1.0");
    EXPECT_NE(request.header("accept-encoding")->find("gzip"), std::string::npos);
    EXPECT_EQ(request.header("referer"), std::nullopt);
  }
}

TEST_F(LinuxURLSession, NamesAFileAfterTheHeaderOfTheFinalAnswer) {
  origin.serve("/go", {.status = 302,
                       .headers = {{"Location", "/to"},
                                   {"Content-Disposition", "attachment; filename=wrong.png"}}});
  origin.serve("/to", {.headers = {{"content-disposition", "attachment; filename=right.png"}}});
  EXPECT_EQ(get(origin.url("/go")).response->suggestedFilename, "right.png");
}

TEST_F(LinuxURLSession, KeepsATemporaryFilePrivate) {
  origin.serve("/a.png", {.body = "private"});
  const mode_t before = umask(0);
  std::promise<mode_t> mode;
  session
      ->downloadTask(URL::parse(origin.url("/a.png")),
                     [&](auto location, auto, auto) {
                       struct stat status {};
                       stat(location->path().c_str(), &status);
                       mode.set_value(status.st_mode);
                     })
      ->resume();
  EXPECT_EQ(mode.get_future().get(), mode_t{S_IFREG | S_IRUSR | S_IWUSR});
  umask(before);
}

TEST_F(LinuxURLSession, DownloadsToTheProcessesOwnFolderUnlessToldOtherwise) {
  origin.serve("/a.png", {.body = "a"});
  const char* const before = getenv("TMPDIR");
  const std::string restored = before != nullptr ? before : "/tmp";
  setenv("TMPDIR", std::filesystem::relative(folder.path()).c_str(), 1);
  const auto other = makeSession("");
  setenv("TMPDIR", restored.c_str(), 1);
  const Ending ending = download(*other, origin.url("/a.png"));
  const std::filesystem::path path = ending.location.value().path();
  EXPECT_TRUE(std::filesystem::equivalent(path.parent_path(), folder.path())) << path;
  EXPECT_TRUE(path.is_absolute() && path.filename().string().starts_with("CFNetworkDownload_"));
  EXPECT_EQ(path.extension(), ".tmp");
}

TEST_F(LinuxURLSession, FailsWhenTheDiskDoes) {
  origin.serve("/a", {.bodySize = bound});
  const auto nowhere = makeSession(folder.path() + "/missing");
  EXPECT_EQ(download(*nowhere, origin.url("/a")).error.value().code, NSURLErrorCannotCreateFile);
  const FileSizeLimit full(bound / 2);
  EXPECT_EQ(download(*session, origin.url("/a?full")).error.value().code,
            NSURLErrorCannotWriteToFile);
  session->invalidateAndCancel();
  EXPECT_TRUE(folder.names().empty());
}

TEST_F(LinuxURLSession, PerformsAllTasksAtOnce) {
  origin.serve("/slow", {.body = "x", .delay = 300ms});
  const auto start = steady_clock::now();
  for (int i = 0; i < 10; ++i) {
    session->dataTask(URL::parse(origin.url("/slow")), endings.ofData(std::to_string(i)))->resume();
  }
  EXPECT_EQ(endings.wait(10).size(), 10U);
  EXPECT_LT(steady_clock::now() - start, 1500ms) << "one after the other takes three seconds";
}

TEST_F(LinuxURLSession, ASlowCompletionHoldsUpNoTransfer) {
  constexpr std::size_t size = 8 << 20;  // more than sockets buffer
  const auto large = makeLinuxURLSession({.temporaryDirectory = folder.path()});
  origin.serve("/quick", {});
  origin.serve("/large", {.bodySize = size});
  const auto arrived = [this] {
    const auto names = folder.names();
    return !names.empty() && std::filesystem::file_size(folder.path() + "/" + names[0]) == size;
  };
  const auto slow = large->dataTask(URL::parse(origin.url("/quick")), [&](auto, auto, auto) {
    large->downloadTask(URL::parse(origin.url("/large")), endings.ofDownload("large"))->resume();
    for (int i = 0; i < 1000 && !arrived(); ++i) std::this_thread::sleep_for(5ms);
    EXPECT_TRUE(arrived());
  });
  slow->resume();
  EXPECT_EQ(endings.wait(1)["large"].body.value_or("").size(), size);
}

TEST_F(LinuxURLSession, CancelsAtOnceWhateverTheNetworkDoes) {
  origin.serve("/silent", {.fate = Reply::Fate::silent});
  origin.serve("/stall", {.body = "abcdef", .fate = Reply::Fate::stall});
  lookupHangs = true;
  const std::string urls[] = {origin.url("/silent"), origin.url("/stall"),
                              "http://hanging.example/"};
  for (const std::string& url : urls) {
    session->downloadTask(URL::parse(url), endings.ofDownload(url))->resume();
  }
  std::this_thread::sleep_for(200ms);
  const auto start = steady_clock::now();
  session->invalidateAndCancel();
  EXPECT_LT(steady_clock::now() - start, 250ms);
  const auto all = endings.wait(0);
  ASSERT_EQ(all.size(), std::size(urls)) << "it returned before the completions had";
  for (const auto& [url, ending] : all) EXPECT_EQ(ending.error->code, NSURLErrorCancelled) << url;
  EXPECT_TRUE(folder.names().empty());
  lookupHangs = false;
}

TEST_F(LinuxURLSession, MayBeDestroyedByACompletion) {
  origin.serve("/a", {});
  origin.serve("/silent", {.fate = Reply::Fate::silent});
  session->downloadTask(URL::parse(origin.url("/silent")), endings.ofDownload("silent"))->resume();
  auto task = session->dataTask(URL::parse(origin.url("/a")),
                                [this, last = session, done = endings.ofData("a")](
                                    auto data, auto response, auto error) mutable {
                                  last.reset();
                                  done(data, response, error);
                                });
  session.reset();
  task->resume();
  task.reset();
  const auto all = endings.wait(2);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all.at("a").error, std::nullopt);
  EXPECT_EQ(all.at("silent").error.value().code, NSURLErrorCancelled);
}

TEST_F(LinuxURLSession, ATaskMayOutliveItsSession) {
  const auto task = session->dataTask(URL::parse(origin.url("/a")), endings.ofData("late"));
  session.reset();
  task->resume();
  EXPECT_EQ(endings.wait(1)["late"].error.value().code, NSURLErrorCancelled);
  EXPECT_TRUE(origin.requests().empty());
}

TEST_F(LinuxURLSession, EndsEveryTaskOnceWhenAllThreadsMeet) {
  origin.serve("/a", {.body = "a"});
  origin.serve("/silent", {.fate = Reply::Fate::silent});
  constexpr int threads = 4;
  constexpr int rounds = 25;
  std::vector<std::thread> starters;
  for (int t = 0; t < threads; ++t) {
    starters.emplace_back([this, t] {
      for (int i = 0; i < rounds; ++i) {
        const std::string name = std::to_string(t) + "/" + std::to_string(i);
        const auto url = URL::parse(origin.url(i % 5 == 0 ? "/silent" : "/a"));
        session->dataTask(url, endings.ofData("data " + name))->resume();
        const auto task = session->downloadTask(url, endings.ofDownload("file " + name));
        std::thread([&task] { task->resume(); }).join();
        task->resume();
        if (t == 0 && i == rounds / 2) session->invalidateAndCancel();
      }
    });
  }
  for (std::thread& starter : starters) starter.join();
  session.reset();
  const auto all = endings.wait(0);
  EXPECT_EQ(all.size(), std::size_t{2 * threads * rounds});
  for (const auto& [name, ending] : all) EXPECT_EQ(ending.calls, 1) << name;
  EXPECT_TRUE(folder.names().empty());
}

}  // namespace
}  // namespace morvelune::testing
