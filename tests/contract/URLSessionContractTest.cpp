// What every URL session promises.
#include <atomic>
#include <filesystem>
#include <thread>

#include "contract/Subject.h"
#include "support/Endings.h"

namespace morvelune::testing {
namespace {

class URLSessionContract : public ::testing::TestWithParam<Subject> {
 protected:
  std::optional<URL> serve(const Reply& reply) { return URL::parse(network.serve(reply)); }
  void start(const std::optional<URL>& url, const std::string& ending) {
    endings.startBoth(session, url, ending);
  }
  // Runs until all completions of started tasks have returned and their captures have gone.
  EndingsByName finish(std::size_t count) {
    network.run();
    endings.wait(count);
    session.invalidateAndCancel();
    return endings.wait(count);
  }

  const Network network = GetParam().network();
  URLSession& session = *network.session;
  Endings endings{network.files};
  const std::optional<URL> url = serve({.body = "body"});
};

INSTANTIATE_CONTRACT(URLSessionContract, network);

TEST_P(URLSessionContract, DeliversAnAnswerOfAnyStatusElseAnErrorAlone) {
  const std::pair<int, std::string> answers[] = {{200, "body"}, {200, ""}, {404, "no"}, {500, ""}};
  for (const auto& [status, body] : answers) {
    start(serve({.status = status, .body = body}), answered(status, body));
  }
  start(std::nullopt, failed(NSURLErrorUnsupportedURL));
  for (const char* each : {"", "cow", "127.0.0.1/a", "file:///etc/hostname", "ftp://127.0.0.1/a"}) {
    start(URL::parse(each), failed(NSURLErrorUnsupportedURL));
  }
  const std::string closed = "http://127.0.0.1:" + std::to_string(LoopbackOrigin::closedPort());
  start(URL::parse(closed), failed(NSURLErrorCannotConnectToHost));
  EXPECT_EQ(finish(endings.wanted().size()), endings.wanted());
}

TEST_P(URLSessionContract, DeletesADownloadUnlessItWasMoved) {
  std::optional<URL> left;
  std::optional<URL> moved;
  const auto leaving = session.downloadTask(url, [&](auto location, auto... told) {
    left = location;
    endings.of("left")(location, told...);
  });
  const auto moving = session.downloadTask(url, [&](auto location, auto... told) {
    moved = URL::fileURL(location->path() + "-moved");
    EXPECT_FALSE(network.files->moveItem(*location, *moved));
    endings.of("moved")(moved, told...);
  });
  leaving->resume();
  moving->resume();
  network.run();
  endings.wait(2);
  // A file has gone when the next completion is called.
  session.dataTask(url, endings.of("next"))->resume();
  EXPECT_EQ(finish(3)["left"], answered(200, "body")) << "it is there while the completion runs";
  EXPECT_FALSE(network.files->contents(left.value()));
  EXPECT_TRUE(network.files->contents(moved.value()));
  std::filesystem::remove(moved->path());
}

TEST_P(URLSessionContract, StartsATaskOnceAndOnlyWhenResumed) {
  auto held = std::make_shared<int>();
  auto never =
      session.dataTask(url, [held, done = endings.of("never")](auto... told) { done(told...); });
  const auto twice = session.dataTask(url, endings.of("twice"));
  twice->resume();
  twice->resume();
  network.run();
  endings.wait(1);
  twice->resume();
  EXPECT_EQ(finish(1), (EndingsByName{{"twice", answered(200, "body")}}));
  EXPECT_EQ(held.use_count(), 2);
  never.reset();
  EXPECT_EQ(held.use_count(), 1) << "a dropped task keeps its completion";
}

TEST_P(URLSessionContract, CallsCompletionsOneAtATimeAndReleasesThem) {
  std::atomic<int> running = 0;
  auto held = std::make_shared<int>();
  for (int i = 0; i < 8; ++i) {
    const auto done = endings.of(std::to_string(i));
    const auto task = session.dataTask(url, [&running, held, done](auto... told) {
      EXPECT_EQ(++running, 1);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      --running;
      done(told...);
    });
    task->resume();
  }
  EXPECT_EQ(finish(8).size(), 8U);
  EXPECT_EQ(held.use_count(), 1);
}

TEST_P(URLSessionContract, ACompletionMayUseTheSession) {
  const auto first = session.dataTask(url, [&](auto...) {
    start(url, failed(NSURLErrorCancelled));
    session.invalidateAndCancel();
    start(url, failed(NSURLErrorCancelled));
  });
  first->resume();
  network.run();
  const auto all = finish(4);
  EXPECT_EQ(all, endings.wanted());
}

TEST_P(URLSessionContract, CancelsAllTasks) {
  const std::string cancelled = failed(NSURLErrorCancelled);
  start(serve({.fate = Reply::Fate::silent}), cancelled);
  const auto slow = session.dataTask(url, [done = endings.of("slow")](auto... told) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    done(told...);
  });
  slow->resume();
  session.invalidateAndCancel();
  auto all = endings.wait(0);  // it returned when the completions had
  EXPECT_EQ(all["slow"], cancelled);
  all.erase("slow");
  EXPECT_EQ(all, endings.wanted());
}

}  // namespace
}  // namespace morvelune::testing
