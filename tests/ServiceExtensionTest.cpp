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

using Strings = std::vector<std::string>;

// What the handler got: the object, and the attachments that it held at that moment.
struct Delivery {
  std::shared_ptr<const UNNotificationContent> content;
  Strings identifiers;
};

Strings identifiersOf(const std::vector<std::shared_ptr<const UNNotificationAttachment>>& all) {
  Strings identifiers;
  for (const auto& attachment : all) identifiers.push_back(attachment->identifier());
  return identifiers;
}

// Tracking with its URL, http:/t, and an attachment of each name.
Dictionary payloadWith(const Strings& names) {
  std::vector<Value> entries;
  for (const auto& name : names) {
    entries.push_back(Dictionary{{"att-url", "http://h/" + name}, {"att-id", name}});
  }
  const Dictionary tracking{{"url", "http:"}, {"display", "t"}};
  return {{"k2tid", 1}, {"mvl-tk", tracking}, {"mvl-atts", Array(entries)}};
}

class ServiceExtensionTest : public ::testing::Test {
 protected:
  ServiceExtensionTest() {
    for (const char* name : {"a", "b", "c", "B", "9", "10"}) {
      memory_.network().answer(std::string("http://h/") + name, {.body = pngBytes()});
    }
  }

  std::shared_ptr<const UNNotificationContent> receive(std::optional<Dictionary> payload) {
    deliveries_.clear();
    const auto content = std::make_shared<const UNNotificationContent>(
        UNNotificationContent::Fields{.title = "T", .userInfo = std::move(payload)});
    extension_->didReceiveNotificationRequest({content}, [this](auto delivered) {
      deliveries_.push_back({delivered, identifiersOf(delivered->attachments())});
    });
    return content;
  }

  void finish(const Strings& names) {
    for (const auto& name : names) memory_.network().finish("http://h/" + name);
  }

  InMemoryPlatform memory_;
  std::shared_ptr<ExposedExtension> extension_ = std::make_shared<ExposedExtension>();
  std::vector<Delivery> deliveries_;
};

TEST_F(ServiceExtensionTest, AForeignPushIsHandedBackUntouched) {
  const Dictionary foreign{{"mvl-tk", payloadWith({}).value("mvl-tk").value()}};
  for (const auto& payload : {std::optional<Dictionary>(), std::optional(foreign)}) {
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
    memory_.network().answer("http:/t", answer);
    const Dictionary payload = payloadWith({}).with("x", nullptr);
    const auto content = receive(payload);
    EXPECT_TRUE(deliveries_.empty());
    memory_.network().finish("http:/t");
    ASSERT_EQ(deliveries_.size(), 1U);
    EXPECT_EQ(deliveries_[0].content, extension_->internalBestAttemptContent());
    EXPECT_EQ(deliveries_[0].content->userInfo(), payload.with("mvl-disp-track-sent", true));
    EXPECT_EQ(content->userInfo(), payload);
  }
}

TEST_F(ServiceExtensionTest, DeliversOnceAfterTheLastOfAllTasksInPlainIdentifierOrder) {
  receive(payloadWith({"a", "B", "lost", "9", "10"}));
  EXPECT_EQ(extension_->internalOperationsCount(), 6U);
  EXPECT_EQ(memory_.network().started(), (Strings{"http:/t", "http://h/a", "http://h/B",
                                                  "http://h/lost", "http://h/9", "http://h/10"}));
  const auto before = extension_->mvlBestAttemptContent();
  finish({"a", "B", "9"});
  EXPECT_EQ(identifiersOf(extension_->mvlBestAttemptContent()->attachments()),
            (Strings{"9", "B", "a"}));
  EXPECT_TRUE(before->attachments().empty());  // it was a copy
  memory_.network().finish("http:/t");
  finish({"10"});
  EXPECT_TRUE(deliveries_.empty());
  finish({"lost"});  // a failure delivers as a success does
  ASSERT_EQ(deliveries_.size(), 1U);
  EXPECT_EQ(deliveries_[0].identifiers, (Strings{"10", "9", "B", "a"}));
  // These stay in the order of completion.
  EXPECT_EQ(identifiersOf(extension_->internalAttachments()), (Strings{"a", "B", "9", "10"}));
}

TEST_F(ServiceExtensionTest, ExpiryDeliversWhatThereIsAndTheRestFollows) {
  receive(payloadWith({"b", "a", "c"}));
  finish({"c", "b"});
  extension_->serviceExtensionTimeWillExpire();
  ASSERT_EQ(deliveries_.size(), 1U);
  EXPECT_EQ(deliveries_[0].identifiers, (Strings{"b", "c"}));
  memory_.network().finishAll();
  ASSERT_EQ(deliveries_.size(), 2U);
  EXPECT_EQ(deliveries_[1].identifiers, (Strings{"a", "b", "c"}));
  extension_->serviceExtensionTimeWillExpire();  // not guarded against either
  EXPECT_EQ(deliveries_.size(), 3U);
}

TEST_F(ServiceExtensionTest, ANewRequestStartsAfresh) {
  for (const std::string name : {"a", "b"}) {
    receive(payloadWith({name}));
    memory_.network().finishAll();
    ASSERT_EQ(deliveries_.size(), 1U);
    EXPECT_EQ(deliveries_[0].identifiers, Strings{name});
  }
}

TEST_F(ServiceExtensionTest, APayloadOfWrongTypesIsDelivered) {
  const Value wrong[] = {nullptr, true, 1, 1.5, "x", Array{1, nullptr}, Dictionary{{"url", 1}}};
  for (const Value& tracked : wrong) {
    for (const Value& attachments : wrong) {
      receive(Dictionary{{"k2tid", nullptr}, {"mvl-tk", tracked}, {"mvl-atts", attachments}});
      memory_.network().finishAll();
      EXPECT_EQ(deliveries_.size(), 1U);
    }
  }
}

// Expiry, a host's reads and completions meet; the thread sanitizer watches.
TEST_F(ServiceExtensionTest, AllThreadsMayMeet) {
  std::atomic<int> handled{0};
  const auto content = std::make_shared<const UNNotificationContent>(
      UNNotificationContent::Fields{.userInfo = payloadWith(Strings(200, "a"))});
  extension_->didReceiveNotificationRequest({content}, [&handled](auto delivered) {
    for (int i = 0; i < 50; ++i) EXPECT_LE(delivered->attachments().size(), 200U);
    ++handled;
  });
  std::thread completing([this] { memory_.network().finishAll(); });
  std::thread expiring([this] {
    for (int i = 0; i < 20; ++i) extension_->serviceExtensionTimeWillExpire();
  });
  for (int i = 0; i < 200; ++i) (void)extension_->mvlBestAttemptContent()->attachments();
  completing.join();
  expiring.join();
  EXPECT_EQ(handled, 21);
  EXPECT_EQ(extension_->internalBestAttemptContent()->attachments().size(), 200U);
}

}  // namespace
}  // namespace morvelune::testing
