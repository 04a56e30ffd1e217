#include <thread>

#include "contract/Subject.h"

namespace morvelune::testing {
namespace {

class MainQueueContract : public ::testing::TestWithParam<Subject> {
 protected:
  void append(char task) {
    queue_->async([this, task] { ran_ += task; });
  }
  // Turns the loop, then gives all the tasks that ran so far.
  const std::string& turn() { return both_.second(), ran_; }

  const Queue both_ = GetParam().queue();
  const std::shared_ptr<MainQueue> queue_ = both_.first;
  std::string ran_;
};

INSTANTIATE_CONTRACT(MainQueueContract, queue);

TEST_P(MainQueueContract, RunsTasksLaterInOrderAndThoseOfTasksInTheNextTurn) {
  queue_->async([this] { append('c'); });
  append('a');
  append('b');
  EXPECT_EQ(ran_, "");
  const std::string first = turn();
  EXPECT_EQ(turn(), "abc");
  NEEDS_RULE("a turn runs the tasks that wait when it begins");
  EXPECT_EQ(first, "ab");
}

TEST_P(MainQueueContract, ATaskIsReleasedBeforeTheNextOneRunsAndMayQueueThen) {
  std::shared_ptr<void> queueing(nullptr, [this](void*) {
    ran_ += "released ";
    append('a');
  });
  queue_->async([held = std::move(queueing)] {});
  append('b');
  turn();
  EXPECT_EQ(turn(), "released ba");
}

TEST_P(MainQueueContract, LosesNoTaskBehindOneThatThrows) {
  NEEDS_RULE("a task may throw");
  queue_->async([] { throw 1; });
  append('a');
  EXPECT_THROW(turn(), int);
  EXPECT_EQ(turn(), "a");
}

TEST_P(MainQueueContract, KeepsOrderWhenATaskTurnsTheLoop) {
  NEEDS_RULE("a task may turn the loop");
  queue_->async([this] {
    append('b');
    turn();
  });
  append('a');
  EXPECT_EQ(turn(), "ab");
}

TEST_P(MainQueueContract, TakesTasksFromAnyThreadWhileItRuns) {
  std::thread other([this] {
    for (int i = 0; i < 500; ++i) append('a');
  });
  for (int turns = 0; turns < 100; ++turns) turn();
  other.join();
  EXPECT_EQ(turn(), std::string(500, 'a'));
}

}  // namespace
}  // namespace morvelune::testing
