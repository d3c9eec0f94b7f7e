#include <gmock/gmock.h>

#include <limits>

#include "BrivaneCore/Policy/AbsoluteLevelSetter.h"
#include "Tests/Support/ControllerBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;

struct AbsoluteLevelSetterTest : testing::Test, FakeEffectsBench {
  FakeBus::Channel& start(std::uint16_t percent) {
    auto& channel = bench.addAnsweringMonitor(2, percent);
    bench.machine.notes.take();
    return channel;
  }
};

const EffectCalls effectsEnded = {"dimmer restore 2", "gamma restore 2", "extended restore 2"};

TEST_F(AbsoluteLevelSetterTest, AHardwareLevelIsWrittenAndEndsEverySoftwareEffect) {
  auto& channel = start(50);
  for (const Percent level : {0, 1, 99, 100}) {
    calls.clear();
    EXPECT_TRUE(controller.setLevel(level, 2));
    EXPECT_EQ(channel.current, level);
    EXPECT_EQ(calls, effectsEnded);
  }
}

TEST_F(AbsoluteLevelSetterTest, ANegativeLevelTakesTheHardwareToZeroAndDims) {
  auto& channel = start(50);
  EXPECT_TRUE(controller.setLevel(-30, 2));
  EXPECT_EQ(channel.current, 0);
  EXPECT_THAT(calls, ElementsAre("dimmer apply 30 to 2"));
  EXPECT_EQ(controller.level(2), -30);
}

TEST_F(AbsoluteLevelSetterTest, ALevelAbove100TakesTheHardwareTo100AndBrightens) {
  auto& channel = start(50);
  EXPECT_TRUE(controller.setLevel(130, 2));
  EXPECT_EQ(channel.current, 100);
  EXPECT_THAT(calls, ElementsAre("gamma apply 30 to 2"));
  EXPECT_EQ(controller.level(2), 130);
}

TEST_F(AbsoluteLevelSetterTest, TheHardwareIsNotWrittenWhenItIsAtThatEndAlready) {
  auto& dark = start(0);
  EXPECT_TRUE(controller.setLevel(-30, 2));
  EXPECT_EQ(dark.setCount, 0);
  EXPECT_TRUE(controller.setLevel(150, 2));
  const auto writes = dark.setCount;
  EXPECT_EQ(dark.current, 100);
  EXPECT_TRUE(controller.setLevel(160, 2));
  EXPECT_EQ(dark.setCount, writes);
}

TEST_F(AbsoluteLevelSetterTest, LevelsBeyondTheEndsAreLimited) {
  start(50);
  EXPECT_TRUE(controller.setLevel(-250, 2));
  EXPECT_TRUE(controller.setLevel(250, 2));
  EXPECT_TRUE(controller.setLevel(std::numeric_limits<Percent>::min(), 2));
  EXPECT_TRUE(controller.setLevel(std::numeric_limits<Percent>::max(), 2));
  EXPECT_THAT(calls, ElementsAre("dimmer apply 100 to 2", "dimmer restore 2",
                                 "gamma apply 100 to 2", "gamma restore 2", "dimmer apply 100 to 2",
                                 "dimmer restore 2", "gamma apply 100 to 2"));
}

TEST_F(AbsoluteLevelSetterTest, WithDimmingOffANegativeLevelIsAnExplicitZero) {
  auto& channel = start(50);
  bench.set("SubZeroDimming", false);
  EXPECT_TRUE(controller.setLevel(-250, 2));
  EXPECT_EQ(channel.current, 0);
  EXPECT_EQ(calls, effectsEnded);
}

TEST_F(AbsoluteLevelSetterTest, WithBrighteningOffALevelAbove100IsAnExplicit100) {
  auto& channel = start(50);
  bench.set("BrightenPastMaximum", false);
  EXPECT_TRUE(controller.setLevel(150, 2));
  EXPECT_EQ(channel.current, 100);
  EXPECT_EQ(calls, effectsEnded);
}

TEST_F(AbsoluteLevelSetterTest, ABoostEndsBeforeDimmingBegins) {
  start(100);
  gammaBrightener->amounts[2] = 1;
  EXPECT_TRUE(controller.setLevel(-30, 2));
  EXPECT_THAT(calls, ElementsAre("gamma restore 2", "dimmer apply 30 to 2"));
}

TEST_F(AbsoluteLevelSetterTest, DimmingEndsBeforeABoostBegins) {
  start(0);
  dimmer->amounts[2] = 1;
  EXPECT_TRUE(controller.setLevel(130, 2));
  EXPECT_THAT(calls, ElementsAre("dimmer restore 2", "gamma apply 30 to 2"));
}

TEST_F(AbsoluteLevelSetterTest, ASoftwareLevelStandsEvenWhenTheHardwareDidNotMove) {
  auto& channel = start(50);
  channel.writeStatus = -1;
  EXPECT_TRUE(controller.setLevel(-30, 2));
  EXPECT_TRUE(controller.setLevel(130, 2));
  EXPECT_FALSE(controller.setLevel(30, 2));
}

TEST_F(AbsoluteLevelSetterTest, AFailedEffectFailsTheCallAndLeavesTheHardwareAsWritten) {
  auto& channel = start(50);
  dimmer->accepts = false;
  gammaBrightener->accepts = false;
  EXPECT_FALSE(controller.setLevel(-30, 2));
  EXPECT_EQ(channel.current, 0);
  EXPECT_FALSE(controller.setLevel(130, 2));
  EXPECT_EQ(channel.current, 100);
}

TEST_F(AbsoluteLevelSetterTest, AnAppleDisplayIsMovedThroughTheDisplayServices) {
  bench.addAppleDisplay({1, 1552, 2, 3, false}, 0.5F);
  EXPECT_TRUE(controller.setLevel(40, 1));
  EXPECT_EQ(bench.machine.displayServices.levels[1], 0.4F);
  EXPECT_TRUE(controller.setLevel(-10, 1));
  EXPECT_EQ(bench.machine.displayServices.levels[1], 0.0F);
}

TEST_F(AbsoluteLevelSetterTest, AHardwareLevelThatIsNotKnownIsMovedToTheNearEnd) {
  for (const auto& [level, hardware] : {std::pair<Percent, float>{-10, 0.0F}, {110, 1.0F}}) {
    FakeEffectsBench fresh;
    fresh.bench.addAppleDisplay({1, 1552, 2, 3, false}, 0.5F);
    EXPECT_TRUE(fresh.controller.setLevel(level, 1));
    EXPECT_EQ(fresh.bench.machine.displayServices.levels[1], hardware) << level;
  }
}

TEST_F(AbsoluteLevelSetterTest, AMonitorThatDoesNotAnswerIsStillDimmed) {
  auto& channel = bench.addSilentMonitor(3);
  channel.answers = true;
  EXPECT_TRUE(controller.setLevel(-30, 3));
  EXPECT_THAT(calls, ElementsAre("dimmer apply 30 to 3"));
  bench.machine.time.runFor(fromSeconds(0.5));
  EXPECT_EQ(channel.getCount, 1) << "the monitor is read in the background";
}

TEST_F(AbsoluteLevelSetterTest, ASoftwareLevelOfALateMonitorSurvivesTheRestore) {
  for (const auto& [level, hardware] : {std::pair<Percent, std::uint16_t>{-10, 0}, {150, 100}}) {
    FakeEffectsBench fresh;
    auto& channel = fresh.bench.addLateMonitor(2, 30, hardware);
    EXPECT_TRUE(fresh.controller.setLevel(level, 2));
    EXPECT_EQ(channel.setCount, 0) << "the hardware is at that end";
    fresh.controller.restoreLateMonitors();
    EXPECT_EQ(channel.current, hardware);
  }
}

TEST_F(AbsoluteLevelSetterTest, ALateMonitorThatCouldNotBeMovedYetIsMovedWhenItAnswers) {
  auto& channel = bench.addLateMonitor(2, 0, 90);
  channel.nextWriteStatuses = {1};
  EXPECT_TRUE(controller.setLevel(150, 2));
  ASSERT_EQ(channel.current, 90);
  controller.restoreLateMonitors();
  EXPECT_EQ(channel.current, 100);
}

TEST_F(AbsoluteLevelSetterTest, AHardwareLevelAlsoHandsABoostOverFirst) {
  start(50);
  gammaBrightener->amounts[2] = 30;
  bench.machine.displaySystem.allScreens[0].potentialHeadroom = 2.0;
  EXPECT_TRUE(controller.setLevel(40, 2));
  EXPECT_THAT(calls, ElementsAre("extended apply 30 to 2", "gamma relinquish 2", "dimmer restore 2",
                                 "gamma restore 2", "extended restore 2"));
}

TEST_F(AbsoluteLevelSetterTest, TheHardwareMovesBetweenTheEndOfOneEffectAndTheStartOfTheOther) {
  auto& channel = start(100);
  dimmer->witness = [&channel] { return " at " + std::to_string(channel.current); };
  gammaBrightener->witness = dimmer->witness;
  gammaBrightener->amounts[2] = 1;
  controller.setLevel(-30, 2);
  controller.setLevel(130, 2);
  EXPECT_THAT(calls, ElementsAre("gamma restore 2 at 100", "dimmer apply 30 to 2 at 0",
                                 "dimmer restore 2 at 0", "gamma apply 30 to 2 at 100"));
}

}  // namespace
}  // namespace brivane
