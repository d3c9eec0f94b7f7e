#include <gmock/gmock.h>

#include <atomic>
#include <memory>

#include "Machines/Mac/Runtime/Runtime.h"
#include "Tests/Mac/Machine/MacBench.h"
#include "Tests/Support/WhenDropped.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using std::chrono::milliseconds;

class MacRuntimeTest : public MacTest {
 protected:
  std::vector<std::string> notes;
  std::optional<MacRuntime> runtime = std::optional<MacRuntime>(std::in_place);

  Task note(std::string text) {
    return [this, text] { notes.push_back(text); };
  }
};

TEST_F(MacRuntimeTest, NothingRunsAfterTheTaskThatStops) {
  runtime->async([&] { runtime->stop(); });
  runtime->async(note("later"));
  runtime->after(Microseconds(0), note("a timer"));
  runtime->run();
  EXPECT_THAT(notes, testing::Not(Contains("later")));
  runtime->async([&] { runtime->stop(); });
  runtime->run();
  EXPECT_THAT(notes, testing::UnorderedElementsAre("later", "a timer"));
}

TEST_F(MacRuntimeTest, AStopFromAnotherThreadBeforeTheRunBeginsIsNotLost) {
  const auto queue = runtime->makeSerialQueue("stopper", QueueQuality::utility);
  const auto stopThere = [&] {
    queue->async([&] { runtime->stop(); });
    queue->sync([] {});
  };
  stopThere();
  runtime->run();
  fake::whenLoopNextBegins(stopThere);
  runtime->run();
}

TEST_F(MacRuntimeTest, ATimerThatIsDueWhenNothingIsToRunAnyMoreWaitsForTheNextRun) {
  runtime->after(milliseconds(1), [&] { runtime->stop(); });
  runtime->after(milliseconds(1), note("same moment"));
  runtime->sleep(milliseconds(3));
  runtime->run();
  EXPECT_THAT(notes, IsEmpty());
  runtime->async([&] { runtime->stop(); });
  runtime->run();
  EXPECT_THAT(notes, ElementsAre("same moment"));
}

TEST_F(MacRuntimeTest, ARepeatingTimerCancelledWithinItsTaskIsGoneWithAllThatItHeld) {
  int dropped = 0;
  TimerID timer = 0;
  timer = runtime->every(milliseconds(1), [&, held = whenDropped([&] { ++dropped; })] {
    runtime->cancel(timer);
    notes.emplace_back("tick");
    EXPECT_EQ(dropped, 0);
    runtime->after(milliseconds(5), [&] { runtime->stop(); });
  });
  runtime->run();
  EXPECT_THAT(notes, ElementsAre("tick"));
  EXPECT_EQ(dropped, 1);
}

TEST_F(MacRuntimeTest, WhatATimersTaskHeldMayCancelAnotherTimerWhenItGoes) {
  const TimerID other = runtime->every(milliseconds(1), note("other"));
  const TimerID timer =
      runtime->after(milliseconds(1), [held = whenDropped([&] { runtime->cancel(other); })] {});
  runtime->cancel(timer);
  runtime->after(milliseconds(5), [&] { runtime->stop(); });
  runtime->run();
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(MacRuntimeTest, WhatATimersTaskHeldMayCancelEveryTimerWhenTheRuntimeEnds) {
  MacRuntime& ending = *runtime;
  std::vector<TimerID> timers;
  int dropped = 0;
  for (int i = 0; i < 3; ++i) {
    timers.push_back(ending.every(milliseconds(1), [held = whenDropped([&] {
                                                      for (const TimerID timer : timers) {
                                                        ending.cancel(timer);
                                                      }
                                                      ++dropped;
                                                    })] {}));
  }
  runtime.reset();
  EXPECT_EQ(dropped, 3);
}

TEST_F(MacRuntimeTest, QueuesHaveTheirLabelsAndQualities) {
  runtime->makeSerialQueue("first", QueueQuality::userInitiated);
  runtime->makeSerialQueue("second", QueueQuality::utility);
  EXPECT_THAT(fake::mac().calls,
              ElementsAre("quality 25", "queue first", "quality 17", "queue second"));
}

TEST_F(MacRuntimeTest, ItsEndWaitsForTheRunningTaskAndDropsAllOthers) {
  std::atomic<int> ran = 0;
  std::atomic<bool> hasBegun = false;
  int dropped = 0;
  const auto queue = runtime->makeSerialQueue("worker", QueueQuality::utility);
  queue->async([&] {
    hasBegun = true;
    runtime->sleep(milliseconds(100));
    ++ran;
  });
  queue->async([&] { ran += 100; });
  runtime->async([&, held = whenDropped([&] { ++dropped; })] { notes.emplace_back("main"); });
  runtime->every(milliseconds(1),
                 [&, held = whenDropped([&] { ++dropped; })] { notes.emplace_back("tick"); });
  while (!hasBegun) runtime->sleep(Microseconds(100));
  runtime.reset();
  EXPECT_EQ(ran, 1);
  EXPECT_EQ(dropped, 2);
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(MacRuntimeTest, WhatATaskAutoreleasesGoesWithTheTaskWhereverItRuns) {
  std::vector<std::size_t> pools;
  const auto look = [&] { pools.push_back(fake::openPools()); };
  const auto queue = runtime->makeSerialQueue("worker", QueueQuality::utility);
  queue->async([look, held = whenDropped(look)] { look(); });
  queue->sync(look);
  runtime->async([look, held = whenDropped(look)] { look(); });
  runtime->async(look);
  runtime->after(milliseconds(1), look);
  TimerID repeating = 0;
  repeating = runtime->every(milliseconds(2), [&] {
    look();
    runtime->cancel(repeating);
    runtime->stop();
  });
  runtime->run();
  EXPECT_THAT(pools, testing::AllOf(testing::SizeIs(8), testing::Each(1u)));
  EXPECT_EQ(fake::openPools(), 0u);
}

TEST_F(MacRuntimeTest, TheMainThreadIsTheOneThatMadeIt) {
  bool isMainThere = true;
  const auto queue = runtime->makeSerialQueue("worker", QueueQuality::utility);
  queue->async([&] { isMainThere = runtime->isMainThread(); });
  queue->sync([] {});
  EXPECT_FALSE(isMainThere);
  EXPECT_TRUE(runtime->isMainThread());
}

TEST_F(MacRuntimeTest, TheClockIsTheOneThatCountsSleep) {
  const Instant before = runtime->now();
  fake::mac().secondsAsleep = 3600;
  const auto passed = runtime->now() - before;
  EXPECT_GE(passed, std::chrono::hours(1));
  EXPECT_LT(passed, std::chrono::hours(2));
}

}  // namespace
}  // namespace brivane
