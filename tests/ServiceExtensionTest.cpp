// The service extension: the deliveries that data/deliveries.json describes, and what no table can.
//
// A case tells the payload and what the servers answer, then step by step what the handler is
// given,
// "" for nothing; whether the push left the extension untouched; then, unless it is silent about
// them, all requests, staged files and log lines.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

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
  InMemoryPlatform memory;  // which ends the pending tasks before the rest goes
  InMemoryURLSession& network = memory.network();
};

Answer answerOf(const ordered_json& given) {
  Answer answer{.status = given.value("status", 200), .body = textOf(given.value("body", ""))};
  if (given.contains("name")) answer.suggestedFilename = given["name"];
  if (given.contains("fails")) answer.error = Error{"", -1, "lost"};
  return answer;
}

TEST(ServiceExtensionTest, DeliversAsWritten) {
  for (const ordered_json& each : testData("data/deliveries.json")) {
    SCOPED_TRACE(each.dump());
    Receiver receiver;
    InMemoryPlatform& memory = receiver.memory;
    InMemoryURLSession& network = receiver.network;
    const ordered_json answers = each.value("answers", ordered_json::object());
    for (const auto& [url, answer] : answers.items()) network.answer(url, answerOf(answer));
    memory.files().isReadable = !each.contains("unreadable");
    for (const ordered_json& step : each["steps"]) {
      const std::string what = step[0];
      if (what == "receive") receiver.receive(valueOf(each["payload"]).dictionary());
      if (what == "expire") receiver.extension->serviceExtensionTimeWillExpire();
      if (what == "finish all") network.finishAll();
      if (what.starts_with("finish http")) network.finish(what.substr(7));
      EXPECT_EQ(receiver.delivered(), step[1]) << what;
    }
    const bool isUntouched = each.contains("untouched");
    EXPECT_EQ(receiver.extension->mvlBestAttemptContent() == nullptr, isUntouched);
    EXPECT_EQ(receiver.extension->internalContentHandler() == nullptr, isUntouched);
    ordered_json files = ordered_json::array();
    for (const auto& [path, bytes] : memory.files().files) files.push_back(path);
    EXPECT_EQ(each.value("started", ordered_json(network.started)), network.started);
    EXPECT_EQ(network.made, network.started);
    EXPECT_EQ(each.value("files", files), files);
    EXPECT_EQ(each.value("log", ordered_json(memory.log())), memory.log());
  }
}

TEST(ServiceExtensionTest, TasksAreCountedBeforeTheyStart) {
  InMemoryPlatform memory;
  const auto made = std::make_shared<ExposedExtension>();
  const auto tracking = made->trackingTaskForNotification(push);
  EXPECT_EQ(memory.log(), Strings{"//--// track url: http:/t"});
  const auto tasks = made->attachmentsTasksForNotification({{"mvl-atts", Array{entry, entry}}});
  EXPECT_EQ(made->internalOperationsCount(), 3U);
  EXPECT_EQ(memory.network().made, (Strings{"http:/t", "http://h/a", "http://h/a"}));
  EXPECT_EQ(memory.network().started, Strings{});
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
  EXPECT_EQ(before->attachments().size(), 0U);
  EXPECT_EQ(receiver.extension->mvlBestAttemptContent()->attachments().at(0)->identifier(), "b");
  // These stay in the order of completion.
  EXPECT_EQ(receiver.extension->internalAttachments().at(0)->identifier(), "c");
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

// Expiry, a host's reads and completions meet; the thread sanitizer watches.
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
  for (int i = 0; i < 200; ++i) (void)extension->mvlBestAttemptContent()->attachments();
  completing.join();
  expiring.join();
  EXPECT_EQ(handled, 21);
  EXPECT_EQ(extension->internalBestAttemptContent()->attachments().size(), 200U);
}

}  // namespace
}  // namespace morvelune::testing
