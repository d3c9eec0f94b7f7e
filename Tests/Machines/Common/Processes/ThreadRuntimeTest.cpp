#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "Machines/Common/Processes/ThreadRuntime.h"

// Real time can always run late on a busy machine: these tests ask that nothing comes early or out
// of order, never that it comes in time.

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class ThreadRuntimeTest : public testing::Test {
 protected:
  std::vector<std::string> notes;
  ThreadRuntime runtime;
};

TEST_F(ThreadRuntimeTest, TheThreadThatRunsIsTheMainThread) {
  EXPECT_TRUE(runtime.isMainThread());
  const auto queue = runtime.makeSerialQueue("work", QueueQuality::utility);
  bool onQueue = true;
  bool inTask = false;
  std::thread([&] {
    queue->async([&] {
      onQueue = runtime.isMainThread();
      runtime.async([&] {
        inTask = runtime.isMainThread();
        runtime.stop();
      });
    });
    runtime.run();
  }).join();
  EXPECT_FALSE(onQueue);
  EXPECT_TRUE(inTask);
  EXPECT_FALSE(runtime.isMainThread());
}

TEST_F(ThreadRuntimeTest, TimersFireInTheOrderOfTheirDeadlinesAndNotEarly) {
  const Instant start = runtime.now();
  runtime.after(milliseconds(500), [&] {
    EXPECT_GE(runtime.now() - start, milliseconds(500));
    notes.emplace_back("later");
    runtime.stop();
  });
  runtime.after(milliseconds(10), [&] { notes.emplace_back("sooner"); });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("sooner", "later"));
}

TEST_F(ThreadRuntimeTest, AQueueNeverRunsTwoTasksAtOnce) {
  const auto queue = runtime.makeSerialQueue("work", QueueQuality::userInitiated);
  int inside = 0;
  int sum = 0;
  const Task task = [&] {
    EXPECT_EQ(++inside, 1);
    ++sum;
    --inside;
  };
  std::thread other([&] {
    for (int i = 0; i < 500; ++i) queue->sync(task);
  });
  for (int i = 0; i < 500; ++i) {
    queue->async(task);
    queue->sync(task);
  }
  other.join();
  queue->sync([] {});
  EXPECT_EQ(sum, 1500);
}

TEST(ThreadRuntime, EndingWaitsForTheRunningTaskAndDropsTheOthers) {
  std::atomic<bool> started = false;
  std::atomic<bool> finished = false;
  std::atomic<bool> other = false;
  {
    ThreadRuntime runtime;
    const auto queue = runtime.makeSerialQueue("work", QueueQuality::userInitiated);
    queue->async([&] {
      started = true;
      runtime.sleep(milliseconds(500));
      finished = true;
    });
    queue->async([&] { other = true; });
    while (!started) std::this_thread::yield();
  }
  EXPECT_TRUE(finished);
  EXPECT_FALSE(other);
}

TEST_F(ThreadRuntimeTest, ADroppedQueueRunsItsTasksAndThenHasNoThreadAnyMore) {
  const auto threads = [] {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
  };
  const auto before = threads();
  std::atomic<int> ran = 0;
  constexpr int queues = 20;
  for (int count = 0; count < queues; ++count) {
    runtime.makeSerialQueue("short", QueueQuality::userInitiated)->async([&] { ++ran; });
    while (ran <= count) std::this_thread::yield();
    // The thread has yet to see that it has no other task.
    runtime.sleep(milliseconds(5));
  }
  EXPECT_LT(threads() - before, queues / 2);
}

}  // namespace
}  // namespace brivane
