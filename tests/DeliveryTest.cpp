// The library over the Linux platform and real sockets, as a host would use it.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <future>
#include <thread>

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
    const auto platform = makeLinuxPlatform(options);
    platform->systemLog = std::make_shared<InMemorySystemLog>();
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
      deliveries_.at(delivered_++).set_value(attached);
    });
  }

  // The nth delivery, waited for; "none" when it does not come.
  std::string delivery(std::size_t n) {
    auto delivery = deliveries_.at(n).get_future();
    return delivery.wait_for(10s) == std::future_status::ready ? delivery.get() : "none";
  }

  LoopbackOrigin origin_;
  TemporaryDirectory folder_;
  std::shared_ptr<MVLNotificationServiceExtension> extension_ =
      std::make_shared<MVLNotificationServiceExtension>();
  std::array<std::promise<std::string>, 2> deliveries_;
  std::atomic<std::size_t> delivered_ = 0;
};

TEST_F(DeliveryTest, ExpiryAndReadsMayMeetCompletions) {
  std::vector<Value> entries;
  for (const std::string id : {"a", "b", "c", "d", "e", "f", "g", "h", "late"}) {
    const auto delay = id == "late" ? 400ms : 20ms;
    const std::string url = origin_.serve("/" + id, {.body = pngBytes(), .delay = delay});
    entries.emplace_back(Dictionary{{"att-url", url}, {"att-id", id}});
  }
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
  EXPECT_EQ(delivered_, 0U);
}

}  // namespace
}  // namespace morvelune::testing
