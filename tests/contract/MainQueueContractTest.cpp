#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

// A queue, and one turn of the loop that drains it.
struct Queue {
  std::shared_ptr<MainQueue> queue;
  std::function<void()> turn;
};

Queue linuxQueue() {
  auto queue = makeLinuxMainQueue();
  return {queue, [queue] { queue->drain(); }};
}

class MainQueueContract : public testing::TestWithParam<Queue (*)()> {
 protected:
  void append(char task) {
    queue_->async([this, task] { ran_ += task; });
  }

  const Queue both_ = GetParam()();
  const std::shared_ptr<MainQueue> queue_ = both_.queue;
  std::string ran_;
};

INSTANTIATE_TEST_SUITE_P(Linux, MainQueueContract, testing::Values(&linuxQueue));

TEST_P(MainQueueContract, RunsTasksLaterInOrderAndThoseOfTasksInTheNextTurn) {
  queue_->async([this] { append('c'); });
  append('a');
  append('b');
  EXPECT_EQ(ran_, "");
  both_.turn();
  EXPECT_EQ(ran_, "ab");
  both_.turn();
  both_.turn();
  EXPECT_EQ(ran_, "abc");
}

TEST_P(MainQueueContract, ATaskIsReleasedBeforeTheNextOneRunsAndMayQueueThen) {
  std::shared_ptr<void> queueing(nullptr, [this](void*) {
    ran_ += "released ";
    append('a');
  });
  queue_->async([held = std::move(queueing)] {});
  append('b');
  both_.turn();
  both_.turn();
  EXPECT_EQ(ran_, "released ba");
}

TEST_P(MainQueueContract, LosesNoTaskBehindOneThatThrows) {
  queue_->async([] { throw 1; });
  append('a');
  EXPECT_THROW(both_.turn(), int);
  both_.turn();
  EXPECT_EQ(ran_, "a");
}

TEST_P(MainQueueContract, KeepsOrderWhenATaskTurnsTheLoop) {
  queue_->async([this] {
    append('c');
    both_.turn();
  });
  append('a');
  append('b');
  both_.turn();
  EXPECT_EQ(ran_, "abc");
}

TEST_P(MainQueueContract, TakesTasksFromAnyThreadWhileItRuns) {
  std::thread other([this] {
    for (int i = 0; i < 500; ++i) append('a');
  });
  for (int turns = 0; turns < 100; ++turns) both_.turn();
  other.join();
  both_.turn();
  EXPECT_EQ(ran_, std::string(500, 'a'));
}

}  // namespace
}  // namespace morvelune
