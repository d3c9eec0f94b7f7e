#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Machines/Common/Processes/ThreadRuntime.h"

namespace brivane {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class HostedMainQueueTest : public testing::Test {
 protected:
  void TearDown() override { runtime.endHosting(); }

  void host() {
    runtime.beginHosting([this] { ++wakes; });
  }

  Task note(const std::string& text) {
    return [this, text] { notes.push_back(text); };
  }

  std::vector<std::string> notes;
  std::atomic<int> wakes = 0;
  ThreadRuntime runtime;
};

TEST_F(HostedMainQueueTest, WhatWasQueuedBeforeWakesTheHostAtOnce) {
  runtime.async(note("task"));
  host();
  EXPECT_EQ(wakes, 1);
  runtime.runDue();
  EXPECT_THAT(notes, ElementsAre("task"));
}

TEST_F(HostedMainQueueTest, WithNothingToDoTheHostSleepsWithoutADeadline) {
  host();
  EXPECT_EQ(wakes, 0);
  EXPECT_EQ(runtime.runDue().nextDeadline, std::nullopt);
}

TEST_F(HostedMainQueueTest, ManyTasksWakeTheHostOnceUntilItsTurn) {
  host();
  runtime.async(note("first"));
  runtime.async(note("second"));
  EXPECT_EQ(wakes, 1);
  runtime.runDue();
  runtime.async(note("third"));
  EXPECT_EQ(wakes, 2);
  EXPECT_THAT(notes, ElementsAre("first", "second"));
}

TEST_F(HostedMainQueueTest, ATaskFromAnotherThreadWakesTheHost) {
  host();
  std::thread([&] { runtime.async(note("from afar")); }).join();
  EXPECT_EQ(wakes, 1);
  runtime.runDue();
  EXPECT_THAT(notes, ElementsAre("from afar"));
}

TEST_F(HostedMainQueueTest, ATaskQueuedByATaskIsLeftToTheNextTurnWhichIsDueAtOnce) {
  host();
  runtime.async([&] {
    notes.emplace_back("outer");
    runtime.async(note("inner"));
  });
  const HostedTurn turn = runtime.runDue();
  EXPECT_THAT(notes, ElementsAre("outer"));
  ASSERT_TRUE(turn.nextDeadline.has_value());
  EXPECT_LE(*turn.nextDeadline, runtime.now());
  EXPECT_EQ(wakes, 1) << "the turn's answer says so already";
  runtime.runDue();
  EXPECT_THAT(notes, ElementsAre("outer", "inner"));
}

TEST_F(HostedMainQueueTest, ATurnSaysWhenTheEarliestTimerIsDue) {
  host();
  const Instant before = runtime.now();
  runtime.after(hours(2), {});
  runtime.after(hours(1), {});
  const HostedTurn turn = runtime.runDue();
  ASSERT_TRUE(turn.nextDeadline.has_value());
  EXPECT_GE(*turn.nextDeadline, before + hours(1));
  EXPECT_LT(*turn.nextDeadline, before + hours(2));
}

TEST_F(HostedMainQueueTest, OnlyATimerThatIsTheEarliestWakesTheHost) {
  host();
  runtime.after(hours(1), {});
  EXPECT_EQ(wakes, 1);
  runtime.runDue();
  runtime.after(hours(2), {});
  EXPECT_EQ(wakes, 1);
  runtime.after(milliseconds(1), {});
  EXPECT_EQ(wakes, 2);
}

TEST_F(HostedMainQueueTest, TimersThatAreDueRunBeforeQueuedTasks) {
  host();
  runtime.async(note("task"));
  runtime.after(Microseconds(0), note("timer"));
  runtime.sleep(milliseconds(1));
  runtime.runDue();
  EXPECT_THAT(notes, ElementsAre("timer", "task"));
}

TEST_F(HostedMainQueueTest, ARepeatingTimerRunsOncePerTurnHoweverLateTheTurn) {
  host();
  int ticks = 0;
  runtime.every(Microseconds(10), [&] {
    ++ticks;
    runtime.sleep(milliseconds(1));
  });
  runtime.sleep(milliseconds(1));
  runtime.runDue();
  EXPECT_EQ(ticks, 1);
}

TEST_F(HostedMainQueueTest, StoppingEndsTheTurnAfterTheTaskThatIsRunning) {
  host();
  runtime.async([&] {
    runtime.stop();
    notes.emplace_back("to its end");
  });
  runtime.async(note("never"));
  EXPECT_TRUE(runtime.runDue().isStopped);
  EXPECT_THAT(notes, ElementsAre("to its end"));
}

TEST_F(HostedMainQueueTest, StoppingFromOutsideWakesTheHostWhoseTurnRunsNothing) {
  host();
  runtime.stop();
  EXPECT_EQ(wakes, 1);
  EXPECT_TRUE(runtime.runDue().isStopped);
  EXPECT_FALSE(runtime.runDue().isStopped) << "a stop ends one run";
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(HostedMainQueueTest, TheThreadThatHostsIsTheMainThread) {
  bool isMain = false;
  std::thread([&] {
    host();
    isMain = runtime.isMainThread();
  }).join();
  EXPECT_TRUE(isMain);
  EXPECT_FALSE(runtime.isMainThread());
}

TEST_F(HostedMainQueueTest, AfterTheEndOfHostingTheHostIsNotWoken) {
  host();
  runtime.endHosting();
  runtime.async(note("task"));
  EXPECT_EQ(wakes, 0);
}

TEST_F(HostedMainQueueTest, NoTaskOfAnotherThreadIsForgottenBetweenTurns) {
  constexpr int count = 20'000;
  std::mutex mutex;
  std::condition_variable woken;
  bool isAwake = false;
  runtime.beginHosting([&] {
    const std::lock_guard lock(mutex);
    isAwake = true;
    woken.notify_one();
  });
  int ran = 0;
  std::thread other([&] {
    for (int i = 0; i < count; ++i) runtime.async([&] { ++ran; });
  });
  while (ran < count) {
    {
      std::unique_lock lock(mutex);
      woken.wait(lock, [&] { return std::exchange(isAwake, false); });
    }
    while (runtime.runDue().nextDeadline) {
    }
  }
  other.join();
  runtime.endHosting();
  EXPECT_EQ(ran, count);
}

}  // namespace
}  // namespace brivane
