#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "BrivaneCore/Support/Fatal.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;

class VirtualRuntimeTest : public testing::Test {
 protected:
  void note(const std::string& what) { notes.push_back(what + "@" + std::to_string(elapsed())); }
  std::int64_t elapsed() { return runtime.now().time_since_epoch().count(); }

  std::vector<std::string> notes;
  VirtualRuntime runtime;
};

TEST_F(VirtualRuntimeTest, TimeStandsStillUntilSomethingWaits) {
  const Instant start = runtime.now();
  EXPECT_EQ(runtime.now(), start);
  runtime.sleep(milliseconds(40));
  EXPECT_EQ(runtime.now() - start, milliseconds(40));
}

TEST_F(VirtualRuntimeTest, OnlyTheThreadThatMadeItIsTheMainThread) {
  bool inTask = false;
  bool onQueue = true;
  bool onForeignThread = true;
  runtime.async([&] { inTask = runtime.isMainThread(); });
  const auto queue = runtime.makeSerialQueue("work", QueueQuality::utility);
  queue->async([&] { onQueue = runtime.isMainThread(); });
  std::thread([&] { onForeignThread = runtime.isMainThread(); }).join();
  runtime.settle();
  EXPECT_TRUE(runtime.isMainThread());
  EXPECT_TRUE(inTask);
  EXPECT_FALSE(onQueue);
  EXPECT_FALSE(onForeignThread);
}

TEST_F(VirtualRuntimeTest, MainTasksWaitUntilTheMainThreadIsInARun) {
  runtime.async([&] { note("task"); });
  runtime.sleep(seconds(1));
  EXPECT_TRUE(notes.empty());
  runtime.settle();
  EXPECT_THAT(notes, ElementsAre("task@1000000"));
}

TEST_F(VirtualRuntimeTest, RunForMeetsEveryDeadlineInItAndLeavesTheClockAtItsEnd) {
  runtime.after(seconds(2), [&] { note("two"); });
  runtime.after(seconds(1), [&] { note("one"); });
  runtime.after(seconds(3), [&] { note("three"); });
  runtime.runFor(seconds(2));
  EXPECT_THAT(notes, ElementsAre("one@1000000", "two@2000000"));
  runtime.runFor(milliseconds(500));
  EXPECT_EQ(elapsed(), 2500000);
}

TEST_F(VirtualRuntimeTest, EqualDeadlinesAreMetInTheOrderOfSetting) {
  for (const auto* name : {"a", "b", "c"}) runtime.after(seconds(1), [&, name] { note(name); });
  runtime.runFor(seconds(1));
  EXPECT_THAT(notes, ElementsAre("a@1000000", "b@1000000", "c@1000000"));
}

TEST_F(VirtualRuntimeTest, WorkThatStartsAtTheEndOfARunStillRunsInIt) {
  runtime.after(seconds(1), [&] {
    note("first");
    runtime.after(Microseconds(0), [&] { note("second"); });
  });
  runtime.runFor(seconds(1));
  EXPECT_THAT(notes, ElementsAre("first@1000000", "second@1000000"));
}

TEST_F(VirtualRuntimeTest, ARepeatingTimerKeepsToTheMultiplesOfItsPeriod) {
  runtime.every(seconds(1), [&] {
    note("tick");
    if (notes.size() == 1) runtime.sleep(milliseconds(2500));
  });
  runtime.runFor(seconds(5));
  EXPECT_THAT(notes, ElementsAre("tick@1000000", "tick@3500000", "tick@4000000", "tick@5000000"));
}

TEST_F(VirtualRuntimeTest, ACancelledTimerDoesNotRunEvenWhenItsTurnHasCome) {
  TimerID second = 0;
  runtime.after(seconds(1), [&] {
    note("first");
    runtime.cancel(second);
  });
  second = runtime.after(seconds(1), [&] { note("second"); });
  runtime.runFor(seconds(2));
  EXPECT_THAT(notes, ElementsAre("first@1000000"));
  EXPECT_EQ(runtime.timerCount(), 0u);
}

TEST_F(VirtualRuntimeTest, ATimerMayCancelItself) {
  TimerID ticker = 0;
  ticker = runtime.every(seconds(1), [&] {
    note("tick");
    runtime.cancel(ticker);
  });
  runtime.runFor(seconds(5));
  EXPECT_THAT(notes, ElementsAre("tick@1000000"));
}

TEST_F(VirtualRuntimeTest, ASleepOnAQueueLetsTheMainThreadGoOn) {
  const auto queue = runtime.makeSerialQueue("work", QueueQuality::userInitiated);
  queue->async([&] {
    note("read starts");
    runtime.sleep(milliseconds(40));
    note("read ends");
  });
  runtime.after(milliseconds(10), [&] {
    note("write starts");
    runtime.sleep(milliseconds(20));
    note("write ends");
  });
  runtime.runFor(seconds(1));
  EXPECT_THAT(notes, ElementsAre("read starts@0", "write starts@10000", "write ends@30000",
                                 "read ends@40000"));
}

TEST_F(VirtualRuntimeTest, SyncWaitsForWhatWasQueuedBefore) {
  const auto queue = runtime.makeSerialQueue("work", QueueQuality::userInitiated);
  queue->async([&] {
    runtime.sleep(milliseconds(40));
    note("earlier");
  });
  queue->sync([&] { note("mine"); });
  EXPECT_THAT(notes, ElementsAre("earlier@40000", "mine@40000"));
}

TEST_F(VirtualRuntimeTest, AQueueOutlivesItsLastReference) {
  runtime.makeSerialQueue("work", QueueQuality::utility)->async([&] { note("ran"); });
  runtime.settle();
  EXPECT_THAT(notes, ElementsAre("ran@0"));
}

TEST_F(VirtualRuntimeTest, StopEndsARunAfterTheRunningTask) {
  runtime.async([&] {
    runtime.stop();
    note("stopping");
  });
  runtime.async([&] { note("left over"); });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("stopping@0"));
  runtime.settle();
  EXPECT_THAT(notes, ElementsAre("stopping@0", "left over@0"));
}

TEST_F(VirtualRuntimeTest, ATaskMayLeaveARunByAnException) {
  struct Left {};
  const auto queue = runtime.makeSerialQueue("work", QueueQuality::utility);
  runtime.after(seconds(1), [] { throw Left(); });
  queue->async([&] {
    runtime.sleep(seconds(2));
    note("work");
  });
  EXPECT_THROW(runtime.run(), Left);
  note("left");
  runtime.runFor(seconds(2));
  EXPECT_THAT(notes, ElementsAre("left@1000000", "work@2000000"));
}

TEST_F(VirtualRuntimeTest, AHandlerOfFatalErrorsMayAskForTheTime) {
  struct Left {};
  const FatalErrorHandler handler([&](const std::string&) {
    note("told");
    throw Left();
  });
  EXPECT_THROW(runtime.run(), Left);
  EXPECT_THAT(notes, ElementsAre("told@0"));
}

TEST(VirtualRuntime, EndingWaitsForRunningTasksAndDropsMainTasks) {
  std::vector<std::string> notes;
  {
    VirtualRuntime runtime;
    const auto queue = runtime.makeSerialQueue("work", QueueQuality::userInitiated);
    queue->async([&] {
      runtime.sleep(milliseconds(40));
      notes.emplace_back("finished");
      runtime.async([&] { notes.emplace_back("never"); });
    });
    runtime.after(seconds(1), [&] { notes.emplace_back("never"); });
    runtime.settle();
    EXPECT_TRUE(notes.empty());
  }
  EXPECT_THAT(notes, ElementsAre("finished"));
}

std::vector<int> orderOfTen(std::uint64_t seed) {
  std::vector<int> order;
  VirtualRuntime runtime(seed);
  for (int i = 0; i < 10; ++i) runtime.after(seconds(1), [&, i] { order.push_back(i); });
  runtime.runFor(seconds(1));
  return order;
}

TEST(VirtualRuntime, ASeedDrawsTheOrderOfEqualDeadlinesAndRepeatsIt) {
  EXPECT_EQ(orderOfTen(7), orderOfTen(7));
  EXPECT_NE(orderOfTen(7), orderOfTen(8));
  EXPECT_THAT(orderOfTen(7), testing::UnorderedElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
}

TEST(VirtualRuntimeDeathTest, WaitingForNothingIsAProgrammingError) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(VirtualRuntime().run(), "nothing is left that could happen");
}

}  // namespace
}  // namespace brivane
