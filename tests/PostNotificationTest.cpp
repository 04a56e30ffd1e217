#include <gtest/gtest.h>

#include <thread>

#include "morvelune/MVLCommonHelpers.h"
#include "morvelune/platform/linux/LinuxPlatform.h"

namespace morvelune {
namespace {

// What a post needs of the queue and of the centre, such as its order, their contracts promise.
TEST(PostNotificationTest, NothingIsPostedBeforeTheMainThreadIsFree) {
  std::vector<PostedNotification> received;
  const auto center = linuxNotificationCenter();
  const auto token = center->addObserver(
      "posted", nullptr, [&, main = std::this_thread::get_id()](const auto& posted) {
        EXPECT_EQ(std::this_thread::get_id(), main);
        received.push_back(posted);
      });
  auto sender = std::make_shared<const int>(1);
  const std::weak_ptr<const int> weak = sender;
  const Dictionary info{{"k", 1}};
  MVLCommonHelpers::postNotificationOnMainThread("posted");
  std::thread([&] { MVLCommonHelpers::postNotificationOnMainThread("posted", info); }).join();
  MVLCommonHelpers::postNotificationOnMainThread("posted", std::move(sender), info);
  MVLCommonHelpers::postNotificationOnMainThread(std::nullopt);  // no name, nothing to post
  EXPECT_TRUE(received.empty());
  EXPECT_FALSE(weak.expired());  // kept until the post has run

  linuxMainQueue()->drain();
  center->removeObserver(token);
  ASSERT_EQ(received.size(), 3U);
  EXPECT_EQ(received[0].object, nullptr);
  EXPECT_EQ(received[0].userInfo, std::nullopt);
  EXPECT_TRUE(received[1].userInfo->isSameObject(info));
  EXPECT_EQ(received[2].object, weak.lock());
  EXPECT_TRUE(received[2].userInfo->isSameObject(info));
  received.clear();
  EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace morvelune
