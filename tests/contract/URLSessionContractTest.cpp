// What every URL session promises.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "platform/linux/LinuxServices.h"
#include "support/Endings.h"
#include "support/InMemoryPlatform.h"
#include "support/LoopbackOrigin.h"

namespace morvelune::testing {
namespace {

// A session, its files, and the servers that it reaches.
struct World {
  World(std::shared_ptr<FileManager> files, std::shared_ptr<URLSession> session)
      : files(std::move(files)), session(std::move(session)) {}
  virtual ~World() = default;
  // The URL of a server that replies so.
  virtual std::string serve(const Reply& reply) = 0;
  // Lets the network do its work, which may go on after the call.
  virtual void run() {}

  const std::shared_ptr<FileManager> files;
  const std::shared_ptr<URLSession> session;
  int served = 0;
};

class LinuxWorld : public World {
 public:
  LinuxWorld() : World(makeLinuxFileManager(), makeLinuxURLSession({})) {}
  std::string serve(const Reply& reply) override {
    return origin_.serve("/answer" + std::to_string(++served), reply);
  }

 private:
  LoopbackOrigin origin_;
};

class InMemoryWorld : public World {
 public:
  explicit InMemoryWorld(
      std::shared_ptr<InMemoryFileManager> files = std::make_shared<InMemoryFileManager>())
      : World(files, std::make_shared<InMemoryURLSession>(files)) {}
  // A silent server is one that the test does not run.
  std::string serve(const Reply& reply) override {
    const std::string url = "http://h/answer" + std::to_string(++served);
    network().answer(url, {.status = reply.status, .body = reply.body});
    return url;
  }
  void run() override { network().finishAll(); }

 private:
  InMemoryURLSession& network() { return static_cast<InMemoryURLSession&>(*session); }
};

class URLSessionContract : public ::testing::TestWithParam<std::string> {
 protected:
  void start(const std::optional<URL>& url, const std::string& ending) {
    const std::string name = std::to_string(wanted.size());
    for (const auto& each : endings.startBoth(session, url, name)) wanted[each] = ending;
  }
  // Runs until all completions of started tasks have returned and their captures have gone.
  EndingsByName finish(std::size_t count) {
    world->run();
    endings.wait(count);
    session.invalidateAndCancel();
    return endings.wait(count);
  }

  const std::unique_ptr<World> world = GetParam() == "Linux"
                                           ? std::unique_ptr<World>(new LinuxWorld)
                                           : std::make_unique<InMemoryWorld>();
  URLSession& session = *world->session;
  Endings endings{world->files};
  EndingsByName wanted;  // of what start() started
  const std::optional<URL> url = URL::parse(world->serve({.body = "body"}));
};

INSTANTIATE_TEST_SUITE_P(Platforms, URLSessionContract, ::testing::Values("Linux", "InMemory"),
                         [](const auto& tested) { return tested.param; });

TEST_P(URLSessionContract, DeliversAnAnswerOfAnyStatus) {
  const std::pair<int, std::string> answers[] = {{200, "body"}, {200, ""}, {404, "no"}, {500, ""}};
  for (const auto& [status, body] : answers) {
    start(URL::parse(world->serve({.status = status, .body = body})), answered(status, body));
  }
  EXPECT_EQ(finish(wanted.size()), wanted);
}

TEST_P(URLSessionContract, FailsWithTheErrorAlone) {
  start(std::nullopt, failed(NSURLErrorUnsupportedURL));
  for (const char* each : {"", "cow", "127.0.0.1/a", "file:///etc/hostname", "ftp://127.0.0.1/a"}) {
    start(URL::parse(each), failed(NSURLErrorUnsupportedURL));
  }
  const std::string closed = "http://127.0.0.1:" + std::to_string(LoopbackOrigin::closedPort());
  start(URL::parse(closed), failed(NSURLErrorCannotConnectToHost));
  EXPECT_EQ(finish(wanted.size()), wanted);
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
    EXPECT_FALSE(world->files->moveItem(*location, *moved));
    endings.of("moved")(moved, told...);
  });
  leaving->resume();
  moving->resume();
  EXPECT_EQ(finish(2)["left"], answered(200, "body")) << "it is there while the completion runs";
  EXPECT_FALSE(world->files->contents(left.value()));
  EXPECT_TRUE(world->files->contents(moved.value()));
  std::filesystem::remove(moved->path());
}

TEST_P(URLSessionContract, StartsATaskOnceAndOnlyWhenResumed) {
  auto held = std::make_shared<int>();
  auto never =
      session.dataTask(url, [held, done = endings.of("never")](auto... told) { done(told...); });
  const auto twice = session.dataTask(url, endings.of("twice"));
  twice->resume();
  twice->resume();
  world->run();
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
  world->run();
  const auto all = finish(4);
  EXPECT_EQ(all, wanted);
}

TEST_P(URLSessionContract, CancelsAllTasks) {
  const std::string cancelled = failed(NSURLErrorCancelled);
  start(URL::parse(world->serve({.fate = Reply::Fate::silent})), cancelled);
  const auto slow = session.dataTask(url, [done = endings.of("slow")](auto... told) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    done(told...);
  });
  slow->resume();
  session.invalidateAndCancel();
  EXPECT_EQ(endings.wait(0).size(), 3U) << "it returns when the completions have";
  wanted["slow"] = cancelled;
  start(url, cancelled);
  world->run();
  EXPECT_EQ(endings.wait(wanted.size()), wanted);
}

}  // namespace
}  // namespace morvelune::testing
