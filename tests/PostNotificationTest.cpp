#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "morvelune/MVLCommonHelpers.h"
#include "morvelune/platform/linux/LinuxPlatform.h"

namespace morvelune {
namespace {

class PostNotificationTest : public ::testing::Test {
 protected:
  ~PostNotificationTest() override { center_->removeObserver(token_); }

  std::vector<PostedNotification> received_;
  const std::thread::id mainThread_ = std::this_thread::get_id();
  const std::shared_ptr<NotificationCenter> center_ = Platform::current()->notificationCenter;
  const NotificationCenter::Token token_ =
      center_->addObserver("posted", nullptr, [this](const PostedNotification& notification) {
        EXPECT_EQ(std::this_thread::get_id(), mainThread_);
        received_.push_back(notification);
      });
};

TEST_F(PostNotificationTest, NothingIsPostedBeforeTheMainThreadIsFree) {
  auto sender = std::make_shared<const int>(1);
  const std::weak_ptr<const int> weak = sender;
  const Dictionary info{{"k", 1}};
  MVLCommonHelpers::postNotificationOnMainThread("posted");
  MVLCommonHelpers::postNotificationOnMainThread("posted", info);
  MVLCommonHelpers::postNotificationOnMainThread("posted", std::move(sender), info);
  MVLCommonHelpers::postNotificationOnMainThread(std::nullopt);  // no name, nothing to post
  EXPECT_TRUE(received_.empty());
  EXPECT_FALSE(weak.expired());  // kept until the post has run

  linuxMainQueue()->drain();
  ASSERT_EQ(received_.size(), 3U);
  EXPECT_EQ(received_[0].object, nullptr);
  EXPECT_EQ(received_[0].userInfo, std::nullopt);
  EXPECT_TRUE(received_[1].userInfo->isSameObject(info));
  EXPECT_EQ(received_[2].object, weak.lock());
  EXPECT_TRUE(received_[2].userInfo->isSameObject(info));
  received_.clear();
  EXPECT_TRUE(weak.expired());
}

TEST_F(PostNotificationTest, EachThreadsPostsArriveInItsOrderOnTheMainThread) {
  std::vector<std::thread> posters;
  for (int poster = 0; poster < 4; ++poster) {
    posters.emplace_back([poster] {
      for (int n = 0; n < 100; ++n) {
        MVLCommonHelpers::postNotificationOnMainThread("posted",
                                                       Dictionary{{"p", poster}, {"n", n}});
      }
    });
  }
  for (auto& poster : posters) poster.join();
  linuxMainQueue()->drain();
  EXPECT_EQ(received_.size(), 400U);
  std::vector<int> next(4);
  for (const auto& received : received_) {
    const auto poster = static_cast<std::size_t>(*received.userInfo->integer("p"));
    EXPECT_EQ(received.userInfo->integer("n"), next[poster]++);
  }
}

}  // namespace
}  // namespace morvelune
