#include <gtest/gtest.h>

#include "BrivaneCore/Seams/DelayedTasks.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;

struct DelayedTasksTest : testing::Test {
  Task note(char letter) {
    return [this, letter] { ran += letter; };
  }

  VirtualRuntime time;
  std::unique_ptr<DelayedTasks> tasks = std::make_unique<DelayedTasks>(time);
  std::string ran;
};

TEST_F(DelayedTasksTest, EachRunsOnceAfterItsDelay) {
  tasks->after(2s, note('b'));
  tasks->after(1s, note('a'));
  time.runFor(1s - 1us);
  EXPECT_EQ(ran, "");
  time.runFor(1us);
  EXPECT_EQ(ran, "a");
  time.runFor(10s);
  EXPECT_EQ(ran, "ab");
}

TEST_F(DelayedTasksTest, PendingTasksEndWithTheOwner) {
  tasks->after(1s, note('a'));
  tasks->after(2s, note('b'));
  tasks->after(3s, note('c'));
  time.runFor(1s);
  tasks.reset();
  EXPECT_EQ(time.timerCount(), 0u);
  time.runFor(10s);
  EXPECT_EQ(ran, "a");
}

TEST_F(DelayedTasksTest, ATaskMaySetTheNextOneAndMayDropTheOwner) {
  tasks->after(1s, [this] {
    tasks->after(1s, note('b'));
    tasks->after(2s, [this] {
      tasks.reset();
      ran += 'c';
    });
    tasks->after(3s, note('d'));
    ran += 'a';
  });
  time.runFor(10s);
  EXPECT_EQ(ran, "abc");
}

}  // namespace
}  // namespace brivane
