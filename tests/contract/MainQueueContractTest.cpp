#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

// A queue, and one turn of the loop that drains it.
using Queue = std::pair<std::shared_ptr<MainQueue>, std::function<void()>>;

Queue linuxQueue() {
  auto queue = makeLinuxMainQueue();
  return {queue, [queue] { queue->drain(); }};
}

class MainQueueContract : public testing::TestWithParam<Queue (*)()> {
 protected:
  void append(char task) {
    queue_->async([this, task] { ran_ += task; });
  }
  // Turns the loop, then gives all the tasks that ran so far.
  const std::string& turn() { return both_.second(), ran_; }

  const Queue both_ = GetParam()();
  const std::shared_ptr<MainQueue> queue_ = both_.first;
  std::string ran_;
};

INSTANTIATE_TEST_SUITE_P(Linux, MainQueueContract, testing::Values(&linuxQueue));

TEST_P(MainQueueContract, RunsTasksLaterInOrderAndThoseOfTasksInTheNextTurn) {
  queue_->async([this] { append('c'); });
  append('a');
  append('b');
  EXPECT_EQ(ran_, "");
  EXPECT_EQ(turn(), "ab");
  EXPECT_EQ(turn(), "abc");
  EXPECT_EQ(turn(), "abc");
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
  queue_->async([] { throw 1; });
  append('a');
  EXPECT_THROW(turn(), int);
  EXPECT_EQ(turn(), "a");
}

TEST_P(MainQueueContract, KeepsOrderWhenATaskTurnsTheLoop) {
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
}  // namespace morvelune
