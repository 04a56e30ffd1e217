// What every URL session promises.
#include <atomic>
#include <filesystem>
#include <thread>

#include "contract/Subject.h"
#include "support/Endings.h"
#include "support/Eventually.h"
#include "support/LoopbackOrigin.h"

namespace morvelune::testing {
namespace {

class URLSessionContract : public ::testing::TestWithParam<Subject> {
 protected:
  void start(const std::optional<URL>& from, const std::string& ending) {
    endings.startBoth(*session, from, ending);
  }

  LoopbackOrigin origin;
  Endings endings;
  const std::shared_ptr<URLSession> session = GetParam().session();
  const std::optional<URL> url = URL::parse(origin.serve("/", {.body = "body"}));
};

INSTANTIATE_CONTRACT(URLSessionContract, session);

TEST_P(URLSessionContract, DeliversAnAnswerOfAnyStatusElseAnErrorAlone) {
  const std::pair<int, std::string> answers[] = {{200, "body"}, {200, ""}, {404, "no"}, {500, ""}};
  for (const auto& [status, body] : answers) {
    const std::string path = std::string("/").append(std::to_string(status)).append(body);
    start(URL::parse(origin.serve(path, {.status = status, .body = body})), answered(status, body));
  }
  start(std::nullopt, failed(NSURLErrorUnsupportedURL));
  for (const char* each : {"", "cow", "127.0.0.1/a", "file:///etc/hostname", "ftp://127.0.0.1/a"}) {
    start(URL::parse(each), failed(NSURLErrorUnsupportedURL));
  }
  const std::string closed = "http://127.0.0.1:" + std::to_string(LoopbackOrigin::closedPort());
  start(URL::parse(closed), failed(NSURLErrorCannotConnectToHost));
  EXPECT_EQ(endings.wait(endings.wanted().size()), endings.wanted());
}

TEST_P(URLSessionContract, DeletesADownloadUnlessItWasMoved) {
  std::string left, moved;
  const auto leaving = session->downloadTask(url, [&](auto location, auto... told) {
    left = location->path();
    endings.of("left")(location, told...);
  });
  const auto moving = session->downloadTask(url, [&](auto location, auto... told) {
    moved = location->path() + "-moved";
    std::filesystem::rename(location->path(), moved);
    endings.of("moved")(std::optional(URL::fileURL(moved)), told...);
  });
  leaving->resume();
  moving->resume();
  endings.wait(2);
  // A file has gone when the next completion is called.
  session->dataTask(url, endings.of("next"))->resume();
  EXPECT_EQ(endings.wait(3)["left"], answered(200, "body")) << "it is there while that runs";
  EXPECT_FALSE(std::filesystem::exists(left));
  EXPECT_TRUE(std::filesystem::remove(moved));
}

TEST_P(URLSessionContract, StartsATaskOnceAndOnlyWhenResumed) {
  auto held = std::make_shared<int>();
  auto never =
      session->dataTask(url, [held, done = endings.of("never")](auto... told) { done(told...); });
  const auto twice = session->dataTask(url, endings.of("twice"));
  twice->resume();
  twice->resume();
  endings.wait(1);
  twice->resume();
  session->dataTask(url, endings.of("next"))->resume();
  const std::string body = answered(200, "body");
  EXPECT_EQ(endings.wait(2), (EndingsByName{{"twice", body}, {"next", body}}));
  EXPECT_EQ(origin.requests().size(), 2U);
  never.reset();
  EXPECT_TRUE(eventually([&held] { return held.use_count() == 1; }))
      << "a dropped task keeps its completion";
}

TEST_P(URLSessionContract, CallsCompletionsOneAtATimeAndReleasesThem) {
  std::atomic<int> running = 0;
  auto held = std::make_shared<int>();
  for (int i = 0; i < 8; ++i) {
    const auto done = endings.of(std::to_string(i));
    const auto task = session->dataTask(url, [&running, held, done](auto... told) {
      EXPECT_EQ(++running, 1);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      --running;
      done(told...);
    });
    task->resume();
  }
  EXPECT_EQ(endings.wait(8).size(), 8U);
  EXPECT_TRUE(eventually([&held] { return held.use_count() == 1; }));
}

}  // namespace
}  // namespace morvelune::testing
