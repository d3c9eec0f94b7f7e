#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneApp/CacheResyncScheduler.h"
#include "Tests/Support/ControllerBench.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;

struct CacheResyncSchedulerTest : testing::Test, ControllerBench {
  std::int64_t readsAfter(Microseconds time) {
    machine.time.runFor(time);
    return channel.getCount;
  }

  FakeBus::Channel& channel = addAnsweringMonitor(2, 50);
  std::int64_t before = channel.getCount;
  CacheResyncScheduler scheduler{machine.time, controller};
};

TEST_F(CacheResyncSchedulerTest, MonitorsAreReadEveryFiveSeconds) {
  scheduler.start();
  EXPECT_EQ(readsAfter(4999ms), before);
  const auto first = readsAfter(1ms + 500ms);
  EXPECT_GT(first, before);
  EXPECT_EQ(readsAfter(4499ms), first);
  EXPECT_GT(readsAfter(1ms + 500ms), first);
}

TEST_F(CacheResyncSchedulerTest, AChangeWithTheMonitorsOwnButtonsIsSeenWithinFiveSeconds) {
  scheduler.start();
  channel.current = 80;
  EXPECT_EQ(controller.level(2), 50);
  machine.time.runFor(6s);
  EXPECT_EQ(controller.level(2), 80);
}

TEST_F(CacheResyncSchedulerTest, WhatElseIsDueEveryFiveSecondsIsDoneThen) {
  int times = 0;
  scheduler.onResync = [&] { ++times; };
  scheduler.start();
  machine.time.runFor(4999ms);
  EXPECT_EQ(times, 0);
  machine.time.runFor(5001ms);
  EXPECT_EQ(times, 2);
}

TEST_F(CacheResyncSchedulerTest, NothingIsReadBeforeTheStart) {
  EXPECT_EQ(readsAfter(20s), before);
}

TEST_F(CacheResyncSchedulerTest, NothingIsReadAfterStopping) {
  scheduler.start();
  scheduler.stop();
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_EQ(readsAfter(20s), before);
  scheduler.stop();
}

TEST_F(CacheResyncSchedulerTest, ASecondStartAddsNoTimer) {
  scheduler.start();
  scheduler.start();
  EXPECT_EQ(machine.time.timerCount(), 1u);
}

TEST_F(CacheResyncSchedulerTest, DestructionCancelsTheTimer) {
  {
    CacheResyncScheduler other(machine.time, controller);
    other.start();
    EXPECT_EQ(machine.time.timerCount(), 1u);
  }
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

}  // namespace
}  // namespace brivane
