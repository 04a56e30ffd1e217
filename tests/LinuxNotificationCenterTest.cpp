// The observers of the Linux notification centre.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/linux/LinuxServices.h"

namespace morvelune::testing {
namespace {

using Token = LinuxNotificationCenter::Token;
using Object = std::shared_ptr<const void>;

class LinuxNotificationCenterTest : public ::testing::Test {
 protected:
  // An observer that notes its letter.
  Token add(char letter, const Object& object = nullptr) {
    return center_->addObserver("n", object, [this, letter](const auto&) { called_ += letter; });
  }
  std::string post(const Object& object = nullptr) {
    center_->post({"n", object, std::nullopt});
    return std::exchange(called_, "");
  }

  const std::shared_ptr<LinuxNotificationCenter> center_ = makeLinuxNotificationCenter();
  std::string called_;
};

TEST_F(LinuxNotificationCenterTest, CallsObserversOfTheNameAndTheObjectInOrder) {
  Object one = std::make_shared<const int>();
  const Object two = std::make_shared<const int>();
  const std::weak_ptr<const void> released = one;
  const Token a = add('a');
  add('1', one);
  add('2', two);
  add('b');
  center_->post({"other", one, std::nullopt});
  EXPECT_EQ(post(one) + " " + post(two) + " " + post(), "a1b a2b ab");
  one.reset();
  EXPECT_TRUE(released.expired());
  center_->removeObserver(a);
  center_->removeObserver(a);
  center_->removeObserver(Token{12345});
  EXPECT_EQ(post(two), "2b");
}

TEST_F(LinuxNotificationCenterTest, TellsObjectsApartThatHadOneAddress) {
  const int storage = 0;
  const auto place = [&storage] { return Object(&storage, [](const void*) {}); };
  add('g', place());  // which is gone
  const Object unowned(Object(), &storage);
  add('u', unowned);
  EXPECT_EQ(post(place()) + post(unowned), "u");
}

TEST_F(LinuxNotificationCenterTest, ObserversMayAddRemoveAndPost) {
  auto held = std::make_shared<char>('a');
  const std::weak_ptr<char> released = held;
  Token own{}, b{};
  own = center_->addObserver("n", nullptr, [&, held = std::move(held)](const auto&) {
    center_->removeObserver(own);
    center_->removeObserver(b);
    add('c');
    center_->post({"other", nullptr, std::nullopt});
    called_ += *held;
  });
  b = add('b');
  EXPECT_EQ(post(), "a");
  EXPECT_TRUE(released.expired());
  EXPECT_EQ(post(), "c");
}

TEST_F(LinuxNotificationCenterTest, ServesAllThreads) {
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
}  // namespace morvelune::testing
