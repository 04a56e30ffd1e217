// The Linux session over real sockets: how its requests end, what they send and what they leave.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <netdb.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <future>

#include "platform/linux/LinuxServices.h"
#include "support/Endings.h"
#include "support/Eventually.h"
#include "support/LoopbackOrigin.h"
#include "support/TemporaryDirectory.h"
#include "support/TestData.h"

namespace {

std::atomic<bool> lookupHangs = false;
std::atomic<int> lookupsThatHang = 0;
std::string trustedCertificates;  // a file; the system's while this is empty
// How many threads and sockets the system still gives, to whoever asks for them.
constexpr int enough = 1'000'000;
std::atomic<int> threadsLeft = enough;
std::atomic<int> socketsLeft = enough;

template <typename Function>
Function* next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// These functions stand before those of the libraries, for the whole program.

// No name lookup leaves the machine, and one hangs while the test says.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                           addrinfo** result) {
  const std::string host = name != nullptr ? name : "";
  if (host == "hanging.example") {
    ++lookupsThatHang;
    while (lookupHangs) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  if (host.ends_with(".example")) return EAI_NONAME;
  return next(&getaddrinfo, "getaddrinfo")(name, service, hints, result);
}

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*function)(void*), void* argument) noexcept {
  if (threadsLeft-- <= 0) return EAGAIN;
  return next(&pthread_create, "pthread_create")(thread, attributes, function, argument);
}

extern "C" int socket(int family, int type, int protocol) noexcept {
  if (socketsLeft-- > 0) return next(&socket, "socket")(family, type, protocol);
  errno = EMFILE;
  return -1;
}

extern "C" int socketpair(int family, int type, int protocol, int* ends) noexcept {
  if (socketsLeft-- > 0) return next(&socketpair, "socketpair")(family, type, protocol, ends);
  errno = EMFILE;
  return -1;
}

// The certificates that are trusted, which the session itself lets nobody choose.
extern "C" int X509_STORE_load_file(X509_STORE* store, const char* file) {
  const char* const wanted = trustedCertificates.empty() ? file : trustedCertificates.c_str();
  return next(&X509_STORE_load_file, "X509_STORE_load_file")(store, wanted);
}

namespace morvelune::testing {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr std::int64_t bound = 10000;

// What a completion could see of a finished download: its path and mode, and the suggested name.
using Download = std::tuple<std::filesystem::path, mode_t, std::string>;

// Makes a certificate of that subject, and gives the file that it lies in with its key.
std::string makeCertificate(const TemporaryDirectory& folder, const std::string& subject) {
  std::string file = folder.path() + "/" + subject;
  const std::string command =
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=test"
      " -addext subjectAltName=" +
      subject + " -out " + file + " -keyout " + file + " 2>/dev/null";
  EXPECT_EQ(std::system(command.c_str()), 0);
  return file;
}

class SecureOrigin {
 public:
  explicit SecureOrigin(const std::string& certificate)
      : server_(certificate.c_str(), certificate.c_str()) {
    server_.Get("/", [](const auto&, auto& response) { response.set_content("secret", ""); });
    server_.set_keep_alive_max_count(1);
    url = "https://127.0.0.1:" + std::to_string(server_.bind_to_any_port("127.0.0.1")) + "/";
    serving_ = std::thread([this] { server_.listen_after_bind(); });
  }
  ~SecureOrigin() {
    eventually([this] { return server_.is_running(); });
    server_.stop();
    serving_.join();
  }
  std::string url;

 private:
  httplib::SSLServer server_;
  std::thread serving_;
};

// Checks, as it goes, that there are as many threads and open files as before.
class NothingStays {
 public:
  ~NothingStays() {
    EXPECT_TRUE(eventually([this] { return count() == before_; })) << "threads, descriptors";
  }

 private:
  static std::pair<std::ptrdiff_t, std::ptrdiff_t> count() {
    const auto entries = [](const char* folder) {
      return std::distance(std::filesystem::directory_iterator(folder), {});
    };
    return {entries("/proc/self/task"), entries("/proc/self/fd")};
  }
  const std::pair<std::ptrdiff_t, std::ptrdiff_t> before_ = count();
};

class LinuxURLSessionTest : public ::testing::Test {
 protected:
  // No request may take the environment's proxy.
  static void SetUpTestSuite() {
    for (const char* exempt : {"no_proxy", "NO_PROXY"}) unsetenv(exempt);
    setenv("http_proxy", "http://127.0.0.1:9", 1);
    std::thread([] {}).join();  // a sanitizer starts a thread of its own with the first one
  }

  static std::shared_ptr<LinuxURLSession> makeSession(const std::string& folder) {
    return makeLinuxURLSession({.idleTimeout = 2s,
                                .resourceTimeout = 5s,
                                .maximumRedirects = 3,
                                .maximumDataBytes = bound,
                                .maximumDownloadBytes = bound,
                                .temporaryDirectory = folder});
  }

  Download download(URLSession& from, const std::string& url) {
    std::promise<Download> seen;
    const auto look = [&](auto location, auto response, auto) {
      struct stat status {};
      stat(location.value().path().c_str(), &status);
      seen.set_value({location->path(), status.st_mode, response->suggestedFilename.value()});
    };
    from.downloadTask(URL::parse(url), look)->resume();
    return seen.get_future().get();
  }
  // Starts a data task and a download, both of which should end so.
  void start(const std::string& url, const std::string& ending) {
    endings.startBoth(*session, URL::parse(url), ending);
  }

  NothingStays nothing;  // of what is made after it
  TemporaryDirectory folder;
  LoopbackOrigin origin;
  Endings endings;
  std::shared_ptr<LinuxURLSession> session = makeSession(folder.path());
};

TEST_F(LinuxURLSessionTest, EndsAsThePlatformsDoes) {
  const auto data = checked(testData("data/session.json"), {"servers", "cases"});
  for (const auto& [path, reply] : data["servers"].items()) origin.serve(path, replyOf(reply));
  for (const auto& each : casesOf(data["cases"], {"url", "reply", "gives", "fails"})) {
    const std::string path = "/case/" + std::to_string(endings.wanted().size());
    const std::string url = each.contains("url") ? each["url"].get<std::string>()
                                                 : origin.serve(path, replyOf(each["reply"]));
    start(url,
          each.contains("fails") ? failed(each["fails"]) : answered(200, textOf(each["gives"])));
  }
  // That none waits for another one's time-out, they would take longer than the wait below.
  for (int i = 0; i < 10; ++i) {
    start(origin.serve("/silent", {.fate = Reply::Fate::silent}), failed(NSURLErrorTimedOut));
  }
  start("https://127.0.0.1:" + std::to_string(origin.port()),
        failed(NSURLErrorSecureConnectionFailed));
  start("http://127.0.0.1/" + std::string(9'000'000, 'a'), failed(NSURLErrorUnsupportedURL));
  EXPECT_EQ(endings.wait(endings.wanted().size()), endings.wanted());
  session->invalidateAndCancel();
  EXPECT_TRUE(folder.names().empty()) << "a partial file was left behind";
}

TEST_F(LinuxURLSessionTest, TrustsAKnownCertificateOfTheServersOwnNameOnly) {
  const TemporaryDirectory files;
  const std::string known = makeCertificate(files, "IP:127.0.0.1");
  const std::string misnamed = makeCertificate(files, "DNS:other.example");
  const std::string unknown = makeCertificate(files, "IP:127.0.0.1,DNS:other.example");
  trustedCertificates = files.write("trusted", contentsOf(known) + contentsOf(misnamed));
  const SecureOrigin origins[] = {SecureOrigin(known), SecureOrigin(misnamed),
                                  SecureOrigin(unknown)};
  session = makeLinuxURLSession({.temporaryDirectory = folder.path()});
  start(origins[0].url, answered(200, "secret"));
  start(origins[1].url, failed(NSURLErrorServerCertificateUntrusted));
  start(origins[2].url, failed(NSURLErrorServerCertificateUntrusted));
  EXPECT_EQ(endings.wait(6), endings.wanted());
  trustedCertificates.clear();
}

TEST_F(LinuxURLSessionTest, SendsThePlainRequest) {
  origin.serve("/go", {.status = 301,
                       .headers = {{"Location", "/d/../there%20.png"},
                                   {"Set-Cookie", "k=v"},
                                   {"Content-Disposition", "attachment; filename=wrong.png"}},
                       .body = "moved"});
  origin.serve("/d/../there%20.png", {});
  origin.serve("/slash", {.headers = {{"content-disposition", "attachment; filename=right.png"}}});
  const std::string oneSlash = "http:/127.0.0.1:" + std::to_string(origin.port());
  EXPECT_EQ(std::get<std::string>(download(*session, origin.url("/go?q=1"))), "there .png");
  EXPECT_EQ(std::get<std::string>(download(*session, oneSlash + "/slash")), "right.png");

  const auto requests = origin.requests();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[0].target, "/go?q=1");
  EXPECT_EQ(requests[1].target, "/d/../there%20.png");
  const auto has = [](const ReceivedRequest& request, const char* text) {
    return request.head.find(text) != std::string::npos;
  };
  EXPECT_TRUE(has(requests[1], "Cookie: k=v\r\n")) << "a cookie lives within its task";
  EXPECT_FALSE(has(requests[2], "Cookie:")) << "and no longer";
  for (const ReceivedRequest& request : requests) {
    EXPECT_TRUE(request.head.starts_with("GET "));
    EXPECT_TRUE(has(request, "User-Agent: MorveluneExtension/1.0\r\n"));
    EXPECT_TRUE(has(request, "gzip"));
    EXPECT_FALSE(has(request, "Referer:"));
  }
}

TEST_F(LinuxURLSessionTest, DownloadsToAPrivateFileInTheProcessesOwnFolder) {
  const char* const before = getenv("TMPDIR");
  const std::string restored = before != nullptr ? before : "/tmp";
  setenv("TMPDIR", std::filesystem::relative(folder.path()).c_str(), 1);
  const auto other = makeSession("");
  setenv("TMPDIR", restored.c_str(), 1);
  const mode_t mask = umask(0);
  const auto [path, mode, name] = download(*other, origin.serve("/a.png", {.body = "a"}));
  umask(mask);
  EXPECT_EQ(mode, mode_t{S_IFREG | S_IRUSR | S_IWUSR});
  EXPECT_TRUE(std::filesystem::equivalent(path.parent_path(), folder.path())) << path;
  EXPECT_TRUE(path.is_absolute() && path.filename().string().starts_with("CFNetworkDownload_"));
  EXPECT_EQ(path.extension(), ".tmp");
}

TEST_F(LinuxURLSessionTest, FailsWhenTheDiskDoes) {
  const auto url = URL::parse(origin.serve("/a", {.bodySize = bound}));
  const auto nowhere = makeSession(folder.path() + "/missing");
  nowhere->downloadTask(url, endings.of("nowhere"))->resume();
  EXPECT_EQ(endings.wait(1)["nowhere"], failed(NSURLErrorCannotCreateFile));
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit full{bound / 2, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &full);
  session->downloadTask(url, endings.of("full"))->resume();
  EXPECT_EQ(endings.wait(2)["full"], failed(NSURLErrorCannotWriteToFile));
  setrlimit(RLIMIT_FSIZE, &before);
  session->invalidateAndCancel();
  EXPECT_TRUE(folder.names().empty());
}

TEST_F(LinuxURLSessionTest, FailsAtOnceWhereTheSystemGivesNoThreadOrSocket) {
  const std::string url = origin.serve("/a", {});
  const auto shortOf = [&](std::atomic<int>& what, int left, const std::string& of) {
    what = left;
    session = makeSession(folder.path());
    start(of, failed(NSURLErrorResourceUnavailable));
    endings.wait(endings.wanted().size());
    what = enough;
  };
  for (auto* what : {&threadsLeft, &socketsLeft}) {
    for (const int left : {0, 1}) shortOf(*what, left, url);
    start(url, answered(200, ""));  // as soon as there is enough again
    endings.wait(endings.wanted().size());
  }
  shortOf(threadsLeft, 2, "http://name.example/");  // none to look it up on
  shortOf(socketsLeft, 1, "http://name.example/");
  EXPECT_EQ(endings.wait(endings.wanted().size()), endings.wanted());
  session->invalidateAndCancel();
  sigset_t held;
  pthread_sigmask(SIG_BLOCK, nullptr, &held);
  EXPECT_FALSE(sigismember(&held, SIGTERM)) << "the caller's signals stay held back";
}

TEST_F(LinuxURLSessionTest, WaitsForDescriptorsRatherThanFail) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit few{64 + 4 * 4, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &few);
  session = makeSession(folder.path());
  origin.serve("/a", {.body = "a"});
  for (int i = 0; i < 100; ++i) start(origin.url("/a"), answered(200, "a"));
  EXPECT_EQ(endings.wait(endings.wanted().size()), endings.wanted());
  setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(LinuxURLSessionTest, SilentServersHoldUpNobodyHoweverMany) {
  constexpr int silent = 140;  // more than may move at once; none is answered before all have come
  const std::string url = origin.serve("/", {.requests = silent});
  const auto begun = steady_clock::now();
  for (int i = 0; i < silent / 2; ++i) start(url, answered(200, ""));
  std::this_thread::sleep_for(100ms);
  const std::size_t first = origin.requests().size();
  if (steady_clock::now() - begun < 200ms) {
    EXPECT_LE(first, 64U) << "more than may move";
  }
  EXPECT_EQ(endings.wait(silent), endings.wanted());
}

TEST_F(LinuxURLSessionTest, ASlowCompletionHoldsUpNoTransfer) {
  constexpr std::size_t size = 8 << 20;  // more than sockets buffer
  const auto large = makeLinuxURLSession({.temporaryDirectory = folder.path()});
  const auto quickURL = URL::parse(origin.serve("/quick", {}));
  const auto largeURL = URL::parse(origin.serve("/large", {.bodySize = size}));
  const auto arrived = [this] {
    const auto names = folder.names();
    return !names.empty() && std::filesystem::file_size(folder.path() + "/" + names[0]) == size;
  };
  const auto slow = large->dataTask(quickURL, [&](auto...) {
    large->downloadTask(largeURL, endings.of("large"))->resume();
    EXPECT_TRUE(eventually(arrived));
  });
  slow->resume();
  EXPECT_TRUE(endings.wait(1)["large"] == answered(200, std::string(size, '\0')));
}

TEST_F(LinuxURLSessionTest, CancelsAtOnceWhateverTheNetworkDoes) {
  lookupHangs = true;
  session = makeLinuxURLSession({.temporaryDirectory = folder.path()});
  const std::string cancelled = failed(NSURLErrorCancelled);
  start("http://hanging.example/", cancelled);
  const std::string silent = origin.serve("/silent", {.fate = Reply::Fate::silent});
  start(silent, cancelled);
  const auto slow = session->dataTask(URL::parse(silent), [&](auto... told) {
    std::this_thread::sleep_for(20ms);
    endings.of("slow")(told...);
  });
  slow->resume();
  start(origin.serve("/stall", {.body = "abcdef", .fate = Reply::Fate::stall}), cancelled);
  EXPECT_TRUE(eventually([&] { return lookupsThatHang >= 2 && origin.requests().size() == 5; }));
  const auto begun = steady_clock::now();
  session->invalidateAndCancel();
  EXPECT_LT(steady_clock::now() - begun, 20s) << "it waited for a time-out";
  EndingsByName wanted = endings.wanted();
  wanted["slow"] = cancelled;
  EXPECT_EQ(endings.wait(0), wanted) << "it returned before the completions had";
  EXPECT_TRUE(folder.names().empty());
  lookupHangs = false;
}

TEST_F(LinuxURLSessionTest, MayBeDestroyedByACompletionAndOutlivedByATask) {
  const auto url = URL::parse(origin.serve("/a", {}));
  auto task =
      session->dataTask(url, [last = session, done = endings.of("a")](auto... told) mutable {
        last.reset();
        done(told...);
      });
  const auto late = session->dataTask(url, endings.of("late"));
  session.reset();
  task->resume();
  task.reset();
  EXPECT_EQ(endings.wait(1)["a"], answered(200, ""));
  late->resume();
  EXPECT_EQ(endings.wait(2)["late"], failed(NSURLErrorCancelled));
}

TEST_F(LinuxURLSessionTest, EndsEveryTaskOnceWhenAllThreadsMeet) {
  const auto quick = URL::parse(origin.serve("/a", {.body = "a"}));
  const auto silent = URL::parse(origin.serve("/silent", {.fate = Reply::Fate::silent}));
  constexpr int threads = 4, rounds = 25;
  std::vector<std::thread> starters;
  for (int t = 0; t < threads; ++t) {
    starters.emplace_back([&, t] {
      for (int i = 0; i < rounds; ++i) {
        const std::string name = std::to_string(t * rounds + i);
        const auto& url = i % 5 == 0 ? silent : quick;
        session->dataTask(url, endings.of("data " + name))->resume();
        session->downloadTask(url, endings.of("file " + name))->resume();
        if (t == 0 && i == rounds / 2) session->invalidateAndCancel();
      }
    });
  }
  for (std::thread& starter : starters) starter.join();
  session.reset();
  const auto all = endings.wait(0);
  EXPECT_EQ(all.size(), std::size_t{2 * threads * rounds});
  for (const auto& [name, ending] : all) {
    EXPECT_TRUE(ending == answered(200, "a") || ending == failed(NSURLErrorCancelled)) << ending;
  }
  EXPECT_TRUE(folder.names().empty());
}

}  // namespace
}  // namespace morvelune::testing
