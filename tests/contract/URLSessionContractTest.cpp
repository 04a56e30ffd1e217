// What every URL session promises.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/linux/LinuxServices.h"
#include "support/Endings.h"
#include "support/InMemoryPlatform.h"
#include "support/LoopbackOrigin.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {
namespace {

// A session, its files, and the servers that it reaches.
class World {
 public:
  virtual ~World() = default;
  virtual std::shared_ptr<URLSession> session() = 0;
  virtual std::shared_ptr<FileManager> files() = 0;
  // The URL of a server that answers so, of one that never answers and of none.
  virtual std::string answering(int status, const std::string& body) = 0;
  virtual std::string silent() = 0;
  virtual std::string refusing() = 0;
  // Lets the network do its work, which may go on after the call.
  virtual void run() = 0;
};

class LinuxWorld : public World {
 public:
  std::shared_ptr<URLSession> session() override { return session_; }
  std::shared_ptr<FileManager> files() override { return makeLinuxFileManager(); }
  std::string answering(int status, const std::string& body) override {
    const std::string path =
        "/answer/" + std::to_string(status) + "/" + std::to_string(body.size());
    origin_.serve(path, {.status = status, .body = body});
    return origin_.url(path);
  }
  std::string silent() override {
    origin_.serve("/silent", {.fate = Reply::Fate::silent});
    return origin_.url("/silent");
  }
  std::string refusing() override {
    return "http://127.0.0.1:" + std::to_string(LoopbackOrigin::closedPort());
  }
  void run() override {}

 private:
  TemporaryDirectory folder_;
  LoopbackOrigin origin_;
  std::shared_ptr<URLSession> session_ =
      makeLinuxURLSession({.temporaryDirectory = folder_.path()});
};

class InMemoryWorld : public World {
 public:
  std::shared_ptr<URLSession> session() override { return session_; }
  std::shared_ptr<FileManager> files() override { return files_; }
  std::string answering(int status, const std::string& body) override {
    const std::string url =
        "http://h/" + std::to_string(status) + "/" + std::to_string(body.size());
    session_->answer(url, {.status = status, .body = body});
    return url;
  }
  std::string silent() override { return answering(200, "never sent: the test does not run it"); }
  std::string refusing() override { return "http://refusing/"; }
  void run() override { session_->finishAll(); }

 private:
  std::shared_ptr<InMemoryFileManager> files_ = std::make_shared<InMemoryFileManager>();
  std::shared_ptr<InMemoryURLSession> session_ = std::make_shared<InMemoryURLSession>(files_);
};

struct WorldKind {
  const char* name;
  std::unique_ptr<World> (*make)();
};

class URLSessionContract : public ::testing::TestWithParam<WorldKind> {
 protected:
  void startBoth(const std::optional<URL>& url, const std::string& name) {
    session().dataTask(url, endings.ofData("data " + name))->resume();
    session().downloadTask(url, endings.ofDownload("file " + name))->resume();
  }
  // Runs until all completions of started tasks have returned and their captures have gone.
  std::map<std::string, Ending> finish(std::size_t count) {
    world->run();
    endings.wait(count);
    session().invalidateAndCancel();
    return endings.wait(count);
  }
  URLSession& session() { return *world->session(); }

  std::unique_ptr<World> world = GetParam().make();
  Endings endings{world->files()};
};

TEST_P(URLSessionContract, DeliversAnAnswerOfAnyStatus) {
  const std::pair<int, std::string> answers[] = {
      {200, "body"}, {200, ""}, {404, "not here"}, {500, "broken"}};
  for (const auto& [status, body] : answers) {
    startBoth(URL::parse(world->answering(status, body)), std::to_string(status) + body);
  }
  const auto all = finish(8);
  for (const auto& [status, body] : answers) {
    for (const char* kind : {"data ", "file "}) {
      const Ending& ending = all.at(kind + std::to_string(status) + body);
      EXPECT_EQ(ending.body, body);
      EXPECT_EQ(ending.response.value().statusCode, status);
      EXPECT_FALSE(ending.error);
      EXPECT_EQ(ending.calls, 1);
    }
  }
}

TEST_P(URLSessionContract, FailsWithTheErrorAlone) {
  const std::pair<std::optional<URL>, int> failures[] = {
      {std::nullopt, NSURLErrorUnsupportedURL},
      {URL::parse(""), NSURLErrorUnsupportedURL},
      {URL::parse("cow"), NSURLErrorUnsupportedURL},
      {URL::parse("127.0.0.1/a"), NSURLErrorUnsupportedURL},
      {URL::parse("file:///etc/hostname"), NSURLErrorUnsupportedURL},
      {URL::parse("ftp://127.0.0.1/a"), NSURLErrorUnsupportedURL},
      {URL::parse(world->refusing()), NSURLErrorCannotConnectToHost},
  };
  const auto name = [](const auto& url) { return url ? url->absoluteString() : "none"; };
  for (const auto& [url, code] : failures) startBoth(url, name(url));
  const auto all = finish(2 * std::size(failures));
  for (const auto& [url, code] : failures) {
    for (const char* kind : {"data ", "file "}) {
      const Ending& ending = all.at(kind + name(url));
      EXPECT_EQ(ending.error.value().code, code) << name(url);
      EXPECT_FALSE(ending.body || ending.location || ending.response) << name(url);
      EXPECT_EQ(ending.calls, 1) << name(url);
    }
  }
}

TEST_P(URLSessionContract, DeletesADownloadUnlessItWasMoved) {
  const auto url = URL::parse(world->answering(200, "body"));
  std::optional<URL> moved;
  session().downloadTask(url, endings.ofDownload("left"))->resume();
  const auto moving = session().downloadTask(url, [&](auto location, auto response, auto error) {
    moved = URL::fileURL(location->path() + "-moved");
    EXPECT_FALSE(world->files()->moveItem(*location, *moved));
    endings.ofDownload("moved")(moved, response, error);
  });
  moving->resume();
  const auto all = finish(2);
  EXPECT_EQ(all.at("left").body, "body") << "it is there while the completion runs";
  EXPECT_FALSE(world->files()->contents(all.at("left").location.value()));
  EXPECT_TRUE(world->files()->contents(moved.value()));
}

TEST_P(URLSessionContract, StartsATaskOnceAndOnlyWhenResumed) {
  const auto url = URL::parse(world->answering(200, "body"));
  auto held = std::make_shared<int>();
  auto never = session().dataTask(
      url, [held, done = endings.ofData("never")](auto... told) { done(std::move(told)...); });
  const auto twice = session().dataTask(url, endings.ofData("twice"));
  twice->resume();
  twice->resume();
  world->run();
  endings.wait(1);
  twice->resume();
  const auto all = finish(1);
  EXPECT_EQ(all.size(), 1U);
  EXPECT_EQ(all.at("twice").calls, 1);
  EXPECT_EQ(held.use_count(), 2);
  never.reset();
  EXPECT_EQ(held.use_count(), 1) << "a dropped task keeps its completion";
}

TEST_P(URLSessionContract, CallsCompletionsOneAtATimeAndReleasesThem) {
  const auto url = URL::parse(world->answering(200, "body"));
  std::atomic<int> running = 0;
  auto held = std::make_shared<int>();
  for (int i = 0; i < 8; ++i) {
    auto done = endings.ofData(std::to_string(i));
    const auto task = session().dataTask(url, [&running, held, done](auto... told) {
      EXPECT_EQ(++running, 1);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      --running;
      done(std::move(told)...);
    });
    task->resume();
  }
  EXPECT_EQ(finish(8).size(), 8U);
  EXPECT_EQ(held.use_count(), 1);
}

TEST_P(URLSessionContract, ACompletionMayUseTheSession) {
  const auto url = URL::parse(world->answering(200, "body"));
  const auto first = session().dataTask(url, [&](auto...) {
    session().dataTask(url, endings.ofData("second"))->resume();
    session().invalidateAndCancel();
    session().dataTask(url, endings.ofData("third"))->resume();
  });
  first->resume();
  world->run();
  const auto all = finish(2);
  EXPECT_EQ(all.at("second").error.value().code, NSURLErrorCancelled);
  EXPECT_EQ(all.at("third").error.value().code, NSURLErrorCancelled);
}

TEST_P(URLSessionContract, CancelsAllTasks) {
  const auto url = URL::parse(world->silent());
  startBoth(url, "before");
  const auto slow = session().dataTask(url, [done = endings.ofData("slow")](auto... told) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    done(std::move(told)...);
  });
  slow->resume();
  session().invalidateAndCancel();
  EXPECT_EQ(endings.wait(0).size(), 3U) << "it returns when the completions have";
  startBoth(URL::parse(world->answering(200, "body")), "after");
  world->run();
  const auto all = endings.wait(5);
  ASSERT_EQ(all.size(), 5U);
  for (const auto& [name, ending] : all) {
    EXPECT_EQ(ending.error.value().code, NSURLErrorCancelled) << name;
    EXPECT_EQ(ending.calls, 1) << name;
  }
}

template <typename Kind>
std::unique_ptr<World> makeWorld() {
  return std::make_unique<Kind>();
}

INSTANTIATE_TEST_SUITE_P(Platforms, URLSessionContract,
                         ::testing::Values(WorldKind{"Linux", makeWorld<LinuxWorld>},
                                           WorldKind{"InMemory", makeWorld<InMemoryWorld>}),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace morvelune::testing
