#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

using Token = NotificationCenter::Token;

class NotificationCenterContract
    : public testing::TestWithParam<std::shared_ptr<NotificationCenter> (*)()> {
 protected:
  // An observer that notes its letter.
  Token add(char letter, std::shared_ptr<const void> object = nullptr) {
    return center_->addObserver("n", std::move(object),
                                [this, letter](const auto&) { called_ += letter; });
  }
  std::string post(std::shared_ptr<const void> object = nullptr, std::string name = "n") {
    called_.clear();
    center_->post({std::move(name), std::move(object), std::nullopt});
    return called_;
  }

  const std::shared_ptr<NotificationCenter> center_ = GetParam()();
  std::string called_;
};

INSTANTIATE_TEST_SUITE_P(Linux, NotificationCenterContract,
                         testing::Values(&makeLinuxNotificationCenter));

TEST_P(NotificationCenterContract, CallsObserversOfANameInOrder) {
  const Token a = add('a');
  add('b');
  add('c');
  EXPECT_EQ(post(), "abc");
  EXPECT_EQ(post(nullptr, "other"), "");
  center_->removeObserver(a);
  center_->removeObserver(a);
  center_->removeObserver(Token{12345});
  EXPECT_EQ(post(), "bc");
}

TEST_P(NotificationCenterContract, PassesOnWhatWasPosted) {
  PostedNotification last;
  center_->addObserver("n", nullptr, [&](const auto& posted) { last = posted; });
  const auto object = std::make_shared<int>();
  center_->post({"n", object, Dictionary{{"k", "v"}}});
  EXPECT_TRUE(last.object == object && last.userInfo == (Dictionary{{"k", "v"}}));
}

TEST_P(NotificationCenterContract, FiltersByObjectWithoutKeepingIt) {
  int storage[2];
  const auto place = [&storage](int index) {
    return std::shared_ptr<const void>(&storage[index], [](const void*) {});
  };
  auto one = place(0);
  const auto two = place(1);
  const std::shared_ptr<const void> unowned(std::shared_ptr<void>(), &storage[1]);
  const std::weak_ptr<const void> released = one;
  add('1', one);
  add('2', two);
  add('u', unowned);
  add('*');
  EXPECT_EQ(post(one) + post(two) + post(unowned) + post(), "1*2*u**");
  one.reset();
  EXPECT_TRUE(released.expired());
  EXPECT_EQ(post(place(0)), "*");  // another object at the very same address
}

TEST_P(NotificationCenterContract, ObserversMayAddRemoveAndPost) {
  Token b{};
  const Token a = center_->addObserver("n", nullptr, [&](const auto&) {
    called_ += 'a';
    center_->removeObserver(b);
    add('c');
    center_->post({"other", nullptr, std::nullopt});
  });
  b = add('b');
  center_->addObserver("other", nullptr, [&](const auto&) { called_ += 'o'; });
  EXPECT_EQ(post(), "ao");
  center_->removeObserver(a);
  EXPECT_EQ(post(), "c");
}

TEST_P(NotificationCenterContract, AnObserverMayRemoveItselfAndThrow) {
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> released = held;
  Token own{};
  own = center_->addObserver("n", nullptr, [&, held = std::move(held)](const auto&) {
    center_->removeObserver(own);
    throw *held;
  });
  add('a');
  EXPECT_THROW(post(), int);
  EXPECT_TRUE(released.expired());
  EXPECT_EQ(post(), "a");
}

TEST_P(NotificationCenterContract, ServesAllThreads) {
  std::atomic<int> calls = 0;
  center_->addObserver("n", nullptr, [&calls](const auto&) { ++calls; });
  const auto work = [this] {
    for (int i = 0; i < 200; ++i) {
      const Token token = center_->addObserver("n", nullptr, [](const auto&) {});
      center_->post({"n", nullptr, std::nullopt});
      center_->removeObserver(token);
    }
  };
  std::thread other(work);
  work();
  other.join();
  EXPECT_EQ(calls, 400);
}

}  // namespace
}  // namespace morvelune
