#include <atomic>
#include <thread>

#include "contract/Subject.h"

namespace morvelune::testing {
namespace {

using Token = NotificationCenter::Token;
using Object = std::shared_ptr<const void>;

constexpr char calledInOrder[] = "observers are called in the order in which they were added";

class NotificationCenterContract : public ::testing::TestWithParam<Subject> {
 protected:
  void TearDown() override {
    for (const Token token : tokens_) center_->removeObserver(token);
  }
  Token add(NotificationCenter::Observer observer, const Object& object = nullptr,
            const std::string& name = "n") {
    return tokens_.emplace_back(center_->addObserver(name, object, std::move(observer)));
  }
  // An observer that notes its letter.
  Token add(char letter, const Object& object = nullptr, const std::string& name = "n") {
    return add([this, letter](const auto&) { called_ += letter; }, object, name);
  }
  std::string post(const Object& object = nullptr, const std::string& name = "n") {
    called_.clear();
    center_->post({name, object, std::nullopt});
    return called_;
  }
  static Object makeObject() { return GetParam().makeObject(); }

  const std::shared_ptr<NotificationCenter> center_ = GetParam().center();
  std::vector<Token> tokens_;
  std::string called_;
};

INSTANTIATE_CONTRACT(NotificationCenterContract, center);

TEST_P(NotificationCenterContract, CallsObserversOfANameInOrderWithWhatWasPosted) {
  PostedNotification last;
  const Token a = add('a');
  add('b');
  add([&last](const auto& posted) { last = posted; });
  const Object object = makeObject();
  center_->post({"n", object, Dictionary{{"k", "v"}}});
  EXPECT_EQ(last.object, object);
  EXPECT_EQ(last.userInfo, (Dictionary{{"k", "v"}}));
  const std::string both = post();
  EXPECT_EQ(post(nullptr, "other"), "");
  center_->removeObserver(a);
  center_->removeObserver(a);
  center_->removeObserver(Token{12345});
  EXPECT_EQ(post(), "b");
  NEEDS_RULE(calledInOrder);
  EXPECT_EQ(both, "ab");
}

TEST_P(NotificationCenterContract, FiltersByObjectWithoutKeepingIt) {
  Object one = makeObject();
  const Object two = makeObject();
  const std::weak_ptr<const void> released = one;
  add('1', one);
  add('2', two);
  add('*');
  const std::string called = post(one) + post(two) + post();
  one.reset();
  EXPECT_TRUE(released.expired());
  NEEDS_RULE(calledInOrder);
  EXPECT_EQ(called, "1*2**");
}

TEST_P(NotificationCenterContract, TellsObjectsApartThatHadOneAddress) {
  NEEDS_RULE("an object is known by its owner");
  const int storage = 0;
  const auto place = [&storage] { return Object(&storage, [](const void*) {}); };
  Object gone = place();
  add('g', gone);
  gone.reset();
  const Object unowned(Object(), &storage);
  add('u', unowned);
  EXPECT_EQ(post(place()) + post(unowned), "u");
}

TEST_P(NotificationCenterContract, ObserversMayAddRemoveAndPost) {
  NEEDS_RULE(calledInOrder);
  Token b{};
  const Token a = add([&](const auto&) {
    called_ += 'a';
    center_->removeObserver(b);
    add('c');
    center_->post({"other", nullptr, std::nullopt});
  });
  b = add('b');
  add('o', nullptr, "other");
  EXPECT_EQ(post(), "ao");
  center_->removeObserver(a);
  EXPECT_EQ(post(), "c");
}

TEST_P(NotificationCenterContract, AnObserverMayRemoveItselfAndThrow) {
  NEEDS_RULE("an observer may throw");
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> released = held;
  Token own{};
  own = add([&, held = std::move(held)](const auto&) {
    center_->removeObserver(own);
    throw *held;
  });
  add('a');
  EXPECT_THROW(post(), int);
  EXPECT_TRUE(released.expired());
  EXPECT_EQ(post(), "a");
}

TEST_P(NotificationCenterContract, ServesAllThreads) {
  NEEDS_RULE("an observer lives while it is called");
  std::atomic<int> calls = 0;
  add([&calls](const auto&) { ++calls; });
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
