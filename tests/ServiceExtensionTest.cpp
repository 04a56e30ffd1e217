// The service extension: the deliveries that data/deliveries.json describes, and what no table can.
//
// A case tells the payload and what the servers answer ("fails": true for an error, beside which a
// download has its file if there is a body; "noFile": true for neither an error nor a file), then
// step by step what the handler is given, "" for nothing. It may tell all requests in order
// ("started"), the files that stay and the lines of the log, where "@" is their folder. A push
// leaves the extension as it was if it is "untouched".
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "morvelune/MVLCommonHelpers.h"
#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"
#include "support/Media.h"
#include "support/TestData.h"

namespace morvelune::testing {
namespace {

using nlohmann::ordered_json;
using Strings = std::vector<std::string>;

const Dictionary entry{{"att-url", "http://h/a"}, {"att-id", "a"}};
const Dictionary push{{"k2tid", 1},
                      {"mvl-tk", Dictionary{{"url", "http:"}, {"display", "t"}}},
                      {"mvl-atts", Array{entry}}};

// An extension, in a platform of its own, that notes what its handler is given.
class Receiver {
 public:
  void receive(const std::optional<Dictionary>& payload) {
    given_ = std::make_shared<const UNNotificationContent>(
        UNNotificationContent::Fields{.title = "T", .userInfo = payload});
    extension->didReceiveNotificationRequest(
        {given_}, [this](const auto& content) { delivered_ += description(*content); });
    EXPECT_EQ(given_->userInfo(), payload);
  }

  // What was delivered since the last call.
  std::string delivered() { return std::exchange(delivered_, ""); }

 private:
  // The content with its attachments at that moment.
  std::string description(const UNNotificationContent& content) const {
    if (&content == given_.get()) return "handed back";
    EXPECT_EQ(&content, extension->internalBestAttemptContent().get());
    EXPECT_EQ(content.title(), "T");
    const Dictionary payload = given_->userInfo().value();
    const bool isTracked = content.userInfo() == payload.with("mvl-disp-track-sent", true);
    EXPECT_TRUE(isTracked || content.userInfo() == payload);
    std::string text = isTracked ? "tracked best attempt" : "best attempt";
    for (const auto& each : content.attachments()) {
      text += " " + each->identifier() + "=" + each->type().value_or("none");
    }
    return text;
  }

  std::shared_ptr<const UNNotificationContent> given_;
  std::string delivered_;

 public:
  const std::shared_ptr<ExposedExtension> extension = std::make_shared<ExposedExtension>();
  InMemoryPlatform memory;
  InMemoryURLSession& network = memory.network();
};

Answer answerOf(const ordered_json& any) {
  const ordered_json given = checked(any, {"status", "body", "name", "fails", "noFile"});
  Answer answer{.status = given.value("status", 200), .body = textOf(given.value("body", ""))};
  if (given.contains("name")) answer.suggestedFilename = given["name"];
  if (given.value("fails", false)) answer.error = Error{"", -1, "lost"};
  answer.hasFile = !given.value("noFile", false);
  return answer;
}

void run(const std::string& step, Receiver& receiver, const Value& payload) {
  if (step == "receive") return receiver.receive(payload.dictionary());
  if (step == "expire") return receiver.extension->serviceExtensionTimeWillExpire();
  if (step == "finish all") return receiver.network.finishAll();
  EXPECT_TRUE(step.starts_with("finish ") && receiver.network.finish(step.substr(7))) << step;
}

TEST(ServiceExtensionTest, DeliversAsWritten) {
  const Keys keys{"payload", "answers", "steps", "started", "files", "log", "untouched"};
  for (const ordered_json& each : casesOf(testData("data/deliveries.json"), keys)) {
    SCOPED_TRACE(each.dump());
    Receiver receiver;
    InMemoryPlatform& memory = receiver.memory;
    InMemoryURLSession& network = receiver.network;
    const ordered_json answers = each.value("answers", ordered_json::object());
    for (const auto& [url, answer] : answers.items()) network.answer(url, answerOf(answer));
    for (const ordered_json& step : each.at("steps")) {
      run(step.at(0), receiver, valueOf(each.at("payload")));
      EXPECT_EQ(receiver.delivered(), step.at(1).get<std::string>()) << step;
    }
    const bool isUntouched = each.value("untouched", false);
    EXPECT_EQ(receiver.extension->mvlBestAttemptContent() == nullptr, isUntouched);
    EXPECT_EQ(receiver.extension->internalContentHandler() == nullptr, isUntouched);
    EXPECT_EQ(each.value("started", ordered_json(network.started)), network.started);
    for (const auto& [url, answer] : answers.items()) {
      EXPECT_GT(std::count(network.started.begin(), network.started.end(), url), 0) << url;
    }
    const Strings files = network.folder.names();
    EXPECT_EQ(each.value("files", ordered_json(files)), files);
    Strings log = memory.log();
    for (std::string& line : log) replaceAll(line, network.folder.path(), "@");
    EXPECT_EQ(each.value("log", ordered_json(log)), log);
  }
}

TEST(ServiceExtensionTest, AllAreCountedBeforeTheFirstStartsAndDownloadsBeforeTheFirstIsMade) {
  Receiver receiver;
  std::vector<std::size_t> counts;
  receiver.network.watch = [&] { counts.push_back(receiver.extension->internalOperationsCount()); };
  receiver.receive(push.with("mvl-atts", Array{entry, entry, entry}));
  // As tracking and three downloads are made, then as the four are started.
  EXPECT_EQ(counts, (std::vector<std::size_t>{1, 4, 4, 4, 4, 4, 4, 4}));
}

TEST(ServiceExtensionTest, TheBestAttemptIsACopyOfWhatThereIs) {
  Receiver receiver;
  receiver.network.answer("http://h/a", {.body = pngBytes()});
  const Array entries{entry.with("att-id", "c"), entry.with("att-id", "b"), entry};
  receiver.receive(push.with("mvl-atts", entries));
  const auto before = receiver.extension->mvlBestAttemptContent();
  receiver.network.finish("http://h/a");
  receiver.network.finish("http://h/a");
  EXPECT_EQ(receiver.extension->mvlBestAttemptContent()->attachments().at(0)->identifier(), "b");
  EXPECT_EQ(before->attachments().size(), 0U);
  // These stay in the order of completion.
  EXPECT_EQ(receiver.extension->internalAttachments().at(0)->identifier(), "c");
}

// A content in whose first write a download completes.
class MetContent : public UNMutableNotificationContent {
 public:
  void setAttachments(Attachments attachments) override {
    if (const auto complete = std::exchange(completion, nullptr)) complete();
    UNMutableNotificationContent::setAttachments(std::move(attachments));
  }
  std::function<void()> completion;
};

TEST(ServiceExtensionTest, WhatIsCollectedDuringAWriteIsNotLost) {
  InMemoryPlatform memory;
  memory.network().answer("http://h/a", {.body = pngBytes()});
  const auto extension = std::make_shared<ExposedExtension>();
  const auto content = std::make_shared<MetContent>();
  content->completion = [&memory] { memory.network().finish("http://h/a"); };
  extension->setInternalBestAttemptContent(content);
  extension->setInternalOperationsCount(2);  // so that nothing is delivered
  extension->downloadTaskForAttachment(entry)->resume();
  EXPECT_EQ(extension->mvlBestAttemptContent()->attachments().size(), 1U);
}

// A log that is watched.
class WatchedLog : public SystemLog {
 public:
  explicit WatchedLog(std::function<void(const std::string&)> watch) : watch_(std::move(watch)) {}
  void writeLine(const std::string& line) override { watch_(line); }

 private:
  const std::function<void(const std::string&)> watch_;
};

TEST(ServiceExtensionTest, ATaskIsCountedAfterItsLineAndCountedDownBeforeItsFileIsRead) {
  std::map<std::string, std::size_t> counts;  // as each line was written
  Receiver receiver;
  receiver.network.answer("http://h/a", {.body = "of no type"});
  const auto platform = std::make_shared<Platform>(*Platform::current());
  platform->systemLog = std::make_shared<WatchedLog>([&](const std::string& line) {
    counts[line.substr(0, 7)] = receiver.extension->internalOperationsCount();
  });
  Platform::install(platform);
  receiver.receive(push);
  receiver.network.finish("http://h/a");
  EXPECT_EQ(counts,
            (std::map<std::string, std::size_t>{{"//--// ", 0}, {"Unknown", 1}, {"Failed ", 1}}));
}

TEST(ServiceExtensionTest, ADownloadKeepsTheExtensionAliveAndTrackingDoesNot) {
  InMemoryPlatform memory;
  auto extension = std::make_shared<ExposedExtension>();
  const std::weak_ptr<ExposedExtension> weak = extension;
  extension->trackingTaskForNotification(push)->resume();
  extension->downloadTaskForAttachment(entry)->resume();
  extension->setInternalOperationsCount(3);  // so that nothing is delivered
  extension.reset();
  EXPECT_FALSE(weak.expired());
  EXPECT_TRUE(memory.network().finish("http://h/a"));
  EXPECT_TRUE(weak.expired());
  EXPECT_TRUE(memory.network().finish("http:/t"));  // finds nobody, does nothing
}

TEST(ServiceExtensionTest, ARequestWithTasksNeedsAnOwnerOfTheExtension) {
  InMemoryPlatform memory;
  for (const char* key : {"mvl-tk", "mvl-atts"}) {
    const Dictionary payload{{"k2tid", 1}, {key, push.value(key).value()}};
    const auto content = std::make_shared<const UNNotificationContent>(
        UNNotificationContent::Fields{.userInfo = payload});
    ExposedExtension unowned;
    EXPECT_THROW(unowned.didReceiveNotificationRequest({content}, [](const auto&) {}),
                 std::bad_weak_ptr);
  }
}

TEST(ServiceExtensionTest, OnePlatformServesARequestToItsEnd) {
  Receiver receiver;
  receiver.network.watch = [] { Platform::install(nullptr); };  // as the first task is made
  receiver.receive(push);
  EXPECT_EQ(receiver.network.started, (Strings{"http:/t", "http://h/a"}));
}

// Files and attachments, of which one call fails.
class FailingServices : public FileManager, public NotificationAttachments {
 public:
  explicit FailingServices(int call) : callsLeft(call) {}
  std::optional<Data> contents(const URL& file) const override {
    return --callsLeft == 0 ? std::nullopt : under_->fileManager->contents(file);
  }
  std::optional<Error> moveItem(const URL& from, const URL& to) override {
    return --callsLeft == 0 ? Error{} : under_->fileManager->moveItem(from, to);
  }
  std::string globallyUniqueString() override {
    return under_->fileManager->globallyUniqueString();
  }
  Result attachment(const std::string& identifier, const URL& file,
                    std::optional<std::string_view> typeHint) const override {
    if (--callsLeft == 0) return Error{};
    return under_->notificationAttachments->attachment(identifier, file, typeHint);
  }
  mutable int callsLeft;

 private:
  const std::shared_ptr<const Platform> under_ = Platform::current();
};

TEST(ServiceExtensionTest, ACallThatFailsCostsOneAttachmentAtMost) {
  bool hasFailed = true;
  for (int call = 1; hasFailed; ++call) {
    SCOPED_TRACE(call);
    Receiver receiver;
    receiver.network.answer("http://h/a", {.body = pngBytes()});
    const auto services = std::make_shared<FailingServices>(call);
    const auto platform = std::make_shared<Platform>(*Platform::current());
    platform->fileManager = services;
    platform->notificationAttachments = services;
    Platform::install(platform);
    receiver.receive(push.with("mvl-atts", Array{entry, entry, entry}));
    receiver.network.finishAll();
    hasFailed = services->callsLeft <= 0;
    EXPECT_EQ(receiver.delivered(), std::string("tracked best attempt a=public.png a=public.png") +
                                        (hasFailed ? "" : " a=public.png"));
    EXPECT_EQ(receiver.extension->internalOperationsCount(), 0U);
  }
}

// Expiry, a host's reads, its platform and completions meet; the thread sanitizer watches.
TEST(ServiceExtensionTest, AllThreadsMayMeet) {
  InMemoryPlatform memory;
  memory.network().answer("http://h/a", {.body = pngBytes()});
  const auto extension = std::make_shared<ExposedExtension>();
  const auto content = std::make_shared<const UNNotificationContent>(UNNotificationContent::Fields{
      .userInfo = push.with("mvl-atts", Array(std::vector<Value>(200, entry)))});
  std::atomic<int> handled{0};
  extension->didReceiveNotificationRequest({content}, [&handled](auto delivered) {
    for (int i = 0; i < 50; ++i) EXPECT_LE(delivered->attachments().size(), 200U);
    ++handled;
  });
  std::thread completing([&memory] { memory.network().finishAll(); });
  std::thread expiring([&extension] {
    for (int i = 0; i < 20; ++i) extension->serviceExtensionTimeWillExpire();
  });
  std::atomic<bool> isDone{false};
  std::thread installing([&isDone, platform = Platform::current()] {
    while (!isDone) Platform::install(platform);
  });
  for (int i = 0; i < 200; ++i) {
    (void)extension->mvlBestAttemptContent()->attachments();
    (void)MVLCommonHelpers::countryCode();  // of the platform that is installed just then
  }
  completing.join();
  expiring.join();
  isDone = true;
  installing.join();
  EXPECT_EQ(handled, 21);
  EXPECT_EQ(extension->internalBestAttemptContent()->attachments().size(), 200U);
}

}  // namespace
}  // namespace morvelune::testing
