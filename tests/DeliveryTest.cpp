// The library over the Linux platform and real sockets, as a host would use it.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "morvelune/MVLNotificationServiceExtension.h"
#include "morvelune/platform/linux/LinuxPlatform.h"
#include "support/InMemoryPlatform.h"
#include "support/LoopbackOrigin.h"
#include "support/Media.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {
namespace {

using namespace std::chrono_literals;

class DeliveryTest : public ::testing::Test {
 protected:
  DeliveryTest() {
    LinuxOptions options;
    options.session.temporaryDirectory = folder_.path();
    options.session.idleTimeout = 1s;
    const auto platform = makeLinuxPlatform(options);
    platform->systemLog = log_;
    Platform::install(platform);
  }
  ~DeliveryTest() override { Platform::install(nullptr); }

  void receive(const Dictionary& payload) {
    const auto content = std::make_shared<const UNNotificationContent>(
        UNNotificationContent::Fields{.userInfo = payload.with("k2tid", "1")});
    extension_->didReceiveNotificationRequest({content}, [this](auto delivered) {
      std::string attached;
      for (const auto& each : delivered->attachments()) {
        attached += each->identifier() + "=" + each->type().value_or("?") + " ";
      }
      const std::lock_guard lock(mutex_);
      deliveries_.push_back(attached);
      changed_.notify_all();
    });
  }

  // The nth delivery, waited for; "none" when it does not come.
  std::string delivery(std::size_t n) {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, 10s, [&] { return deliveries_.size() > n; })) return "none";
    return deliveries_[n];
  }

  Value entry(const std::string& identifier, Reply reply) {
    origin_.serve("/" + identifier, std::move(reply));
    return Dictionary{{"att-url", origin_.url("/" + identifier)}, {"att-id", identifier}};
  }

  LoopbackOrigin origin_;
  TemporaryDirectory folder_;
  std::shared_ptr<InMemorySystemLog> log_ = std::make_shared<InMemorySystemLog>();
  std::shared_ptr<MVLNotificationServiceExtension> extension_ =
      std::make_shared<MVLNotificationServiceExtension>();
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> deliveries_;
};

TEST_F(DeliveryTest, ExpiryAndReadsMayMeetCompletions) {
  std::vector<Value> entries;
  for (const char* id : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
    entries.push_back(entry(id, {.body = pngBytes(), .delay = 20ms}));
  }
  entries.push_back(entry("late", {.body = pngBytes(), .delay = 400ms}));
  receive(Dictionary{{"mvl-atts", Array(entries)}});
  std::thread host([this] {
    for (int i = 0; i < 200; ++i) {
      (void)extension_->mvlBestAttemptContent();
      std::this_thread::sleep_for(1ms);
    }
  });
  std::this_thread::sleep_for(25ms);
  extension_->serviceExtensionTimeWillExpire();
  EXPECT_EQ(delivery(0).find("late"), std::string::npos);
  EXPECT_NE(delivery(1).find("h=public.png late=public.png "), std::string::npos);
  host.join();
}

TEST_F(DeliveryTest, TheExtensionMayBeGoneBeforeItsRequestsEnd) {
  receive(Dictionary{{"mvl-tk", Dictionary{{"url", origin_.url("/t")}, {"display", "d"}}}});
  const std::weak_ptr<MVLNotificationServiceExtension> weak = extension_;
  extension_.reset();
  EXPECT_TRUE(weak.expired());
  Platform::current()->urlSession->invalidateAndCancel();
  EXPECT_TRUE(deliveries_.empty());
}

}  // namespace
}  // namespace morvelune::testing
