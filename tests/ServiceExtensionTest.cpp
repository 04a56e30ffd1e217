#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"
#include "support/Media.h"

namespace morvelune::testing {
namespace {

// What the handler got: the object, and what it held at that moment.
struct Delivery {
  std::shared_ptr<const UNNotificationContent> content;
  std::string identifiers;  // of the attachments, in order, a blank after each
};

std::string identifiersOf(const UNNotificationContent& content) {
  std::string identifiers;
  for (const auto& attachment : content.attachments())
    identifiers += attachment->identifier() + " ";
  return identifiers;
}

Dictionary attachmentEntry(const std::string& identifier) {
  return {{"att-url", "http://h/" + identifier}, {"att-id", identifier}};
}

const Dictionary tracking{{"url", "http:"}, {"display", "t"}};
constexpr char trackingURL[] = "http:/t";

class ServiceExtensionTest : public ::testing::Test {
 protected:
  ServiceExtensionTest() {
    for (const char* name : {"a", "b", "c", "B", "9", "10"}) {
      memory_.network().answer(std::string("http://h/") + name, {.body = pngBytes()});
    }
  }

  std::shared_ptr<const UNNotificationContent> receive(std::optional<Dictionary> payload) {
    const auto content = std::make_shared<const UNNotificationContent>(
        UNNotificationContent::Fields{.title = "T", .userInfo = std::move(payload)});
    extension_->didReceiveNotificationRequest({content}, [this](auto delivered) {
      deliveries_.push_back({delivered, identifiersOf(*delivered)});
    });
    return content;
  }

  void finish(const std::string& name) { memory_.network().finish("http://h/" + name); }

  InMemoryPlatform memory_;
  std::shared_ptr<ExposedExtension> extension_ = std::make_shared<ExposedExtension>();
  std::vector<Delivery> deliveries_;
};

TEST_F(ServiceExtensionTest, AForeignPushIsHandedBackUntouched) {
  for (const auto& payload :
       {std::optional<Dictionary>(), std::optional(Dictionary{{"mvl-tk", tracking}})}) {
    deliveries_.clear();
    const auto content = receive(payload);
    ASSERT_EQ(deliveries_.size(), 1U);
    EXPECT_EQ(deliveries_[0].content, content);
    EXPECT_EQ(extension_->internalBestAttemptContent(), nullptr);
    EXPECT_EQ(extension_->mvlBestAttemptContent(), nullptr);
    EXPECT_FALSE(extension_->internalContentHandler());
  }
  EXPECT_TRUE(memory_.network().made().empty());
}

TEST_F(ServiceExtensionTest, WithNothingToDoTheContentIsHandedBackAtOnce) {
  const auto content = receive(Dictionary{{"k2tid", "1"}, {"mvl-atts", Array()}});
  ASSERT_EQ(deliveries_.size(), 1U);
  EXPECT_EQ(deliveries_[0].content, content);
  // Expiry afterwards delivers the best attempt content, which was prepared all the same.
  extension_->serviceExtensionTimeWillExpire();
  ASSERT_EQ(deliveries_.size(), 2U);
  EXPECT_EQ(deliveries_[1].content, extension_->internalBestAttemptContent());
  EXPECT_EQ(deliveries_[1].content->title(), "T");
  EXPECT_FALSE(deliveries_[1].content->userInfo()->contains("mvl-disp-track-sent"));
}

TEST_F(ServiceExtensionTest, TrackingAloneMarksThePayloadAndDeliversHoweverItEnds) {
  for (const Answer& answer : {Answer{}, Answer{.status = 500}, Answer{.error = Error{}}}) {
    deliveries_.clear();
    memory_.network().answer(trackingURL, answer);
    const Dictionary payload{{"k2tid", "1"}, {"mvl-tk", tracking}, {"x", nullptr}};
    const auto content = receive(payload);
    EXPECT_TRUE(deliveries_.empty());
    memory_.network().finish(trackingURL);
    ASSERT_EQ(deliveries_.size(), 1U);
    EXPECT_EQ(deliveries_[0].content, extension_->internalBestAttemptContent());
    EXPECT_EQ(deliveries_[0].content->userInfo(), payload.with("mvl-disp-track-sent", true));
    EXPECT_EQ(content->userInfo(), payload);
  }
}

TEST_F(ServiceExtensionTest, DeliversOnceAfterTheLastOfAllTasksInPlainIdentifierOrder) {
  receive(Dictionary{
      {"k2tid", 1},
      {"mvl-tk", tracking},
      {"mvl-atts", Array{attachmentEntry("a"), attachmentEntry("B"), attachmentEntry("lost"),
                         attachmentEntry("9"), attachmentEntry("10")}}});
  EXPECT_EQ(extension_->internalOperationsCount(), 6U);
  EXPECT_EQ(memory_.network().started(),
            (std::vector<std::string>{trackingURL, "http://h/a", "http://h/B", "http://h/lost",
                                      "http://h/9", "http://h/10"}));
  for (const char* name : {"a", "B", "9"}) finish(name);
  EXPECT_EQ(identifiersOf(*extension_->mvlBestAttemptContent()), "9 B a ");
  memory_.network().finish(trackingURL);
  finish("10");
  EXPECT_TRUE(deliveries_.empty());
  finish("lost");  // a failure delivers as a success does
  ASSERT_EQ(deliveries_.size(), 1U);
  EXPECT_EQ(deliveries_[0].identifiers, "10 9 B a ");
  const auto collected = extension_->internalAttachments();
  ASSERT_EQ(collected.size(), 4U);
  EXPECT_EQ(collected[0]->identifier(), "a");  // these stay in the order of completion
}

TEST_F(ServiceExtensionTest, ExpiryDeliversWhatThereIsAndTheRestFollows) {
  receive(Dictionary{
      {"k2tid", 1},
      {"mvl-tk", tracking},
      {"mvl-atts", Array{attachmentEntry("b"), attachmentEntry("a"), attachmentEntry("c")}}});
  for (const char* name : {"c", "b"}) finish(name);
  extension_->serviceExtensionTimeWillExpire();
  ASSERT_EQ(deliveries_.size(), 1U);
  EXPECT_EQ(deliveries_[0].identifiers, "b c ");
  memory_.network().finishAll();
  ASSERT_EQ(deliveries_.size(), 2U);
  EXPECT_EQ(deliveries_[1].identifiers, "a b c ");
  extension_->serviceExtensionTimeWillExpire();  // not guarded against either
  EXPECT_EQ(deliveries_.size(), 3U);
}

TEST_F(ServiceExtensionTest, TheBestAttemptIsACopy) {
  receive(Dictionary{{"k2tid", 1}, {"mvl-atts", Array{attachmentEntry("a")}}});
  const auto before = extension_->mvlBestAttemptContent();
  finish("a");
  EXPECT_EQ(identifiersOf(*before), "");
  EXPECT_EQ(identifiersOf(*extension_->internalBestAttemptContent()), "a ");
}

TEST_F(ServiceExtensionTest, ANewRequestStartsAfresh) {
  const Dictionary payload{{"k2tid", 1}, {"mvl-atts", Array{attachmentEntry("a")}}};
  receive(payload);
  finish("a");
  receive(payload.with("mvl-atts", Array{attachmentEntry("b")}));
  finish("b");
  ASSERT_EQ(deliveries_.size(), 2U);
  EXPECT_EQ(deliveries_[1].identifiers, "b ");
  EXPECT_NE(deliveries_[0].content, deliveries_[1].content);
}

TEST_F(ServiceExtensionTest, APayloadOfWrongTypesIsDelivered) {
  const Value wrong[] = {nullptr, true, 1, 1.5, "x", Array{1, nullptr}, Dictionary{{"url", 1}}};
  for (const Value& tracked : wrong) {
    for (const Value& attachments : wrong) {
      deliveries_.clear();
      receive(Dictionary{{"k2tid", nullptr}, {"mvl-tk", tracked}, {"mvl-atts", attachments}});
      memory_.network().finishAll();
      EXPECT_EQ(deliveries_.size(), 1U);
    }
  }
}

// Expiry, a host's reads and completions meet; the thread sanitizer watches.
TEST_F(ServiceExtensionTest, AllThreadsMayMeet) {
  std::vector<Value> entries;
  for (int i = 0; i < 200; ++i) entries.push_back(attachmentEntry("a"));
  std::atomic<int> handled{0};
  const auto content = std::make_shared<const UNNotificationContent>(UNNotificationContent::Fields{
      .userInfo = Dictionary{{"k2tid", 1}, {"mvl-tk", tracking}, {"mvl-atts", Array(entries)}}});
  extension_->didReceiveNotificationRequest({content}, [&handled](auto delivered) {
    for (int i = 0; i < 50; ++i) {  // a handler that reads on while the content is written
      EXPECT_LE(delivered->attachments().size(), 200U);
    }
    ++handled;
  });
  std::vector<std::thread> threads;
  threads.emplace_back([this] { memory_.network().finishAll(); });
  threads.emplace_back([this] {
    for (int i = 0; i < 20; ++i) extension_->serviceExtensionTimeWillExpire();
  });
  threads.emplace_back([this] {
    for (int i = 0; i < 200; ++i) (void)extension_->mvlBestAttemptContent()->attachments();
  });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(handled, 21);
  EXPECT_EQ(extension_->internalBestAttemptContent()->attachments().size(), 200U);
}

}  // namespace
}  // namespace morvelune::testing
