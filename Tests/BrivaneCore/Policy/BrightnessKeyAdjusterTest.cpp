#include <gmock/gmock.h>

#include <limits>

#include "BrivaneCore/Policy/BrightnessKeyAdjuster.h"
#include "Tests/Support/ControllerBench.h"

// Which display a press goes to, and the hardware range. The software ranges have a file of their
// own.

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Percent greatest = std::numeric_limits<Percent>::max();
constexpr Percent least = std::numeric_limits<Percent>::min();

struct BrightnessKeyAdjusterTest : testing::Test, ControllerBench {
  BrightnessKeyAdjusterTest() {
    set("SubZeroDimming", false);
    set("BrightenPastMaximum", false);
  }

  AdjustOutcome press(Percent delta, bool snapToStep = false) {
    return controller.adjustDisplayUnderCursor(delta, snapToStep);
  }
};

AdjustOutcome monitor2At(Percent level) {
  return AdjustOutcome::handled(2, "Monitor 2", level);
}

TEST_F(BrightnessKeyAdjusterTest, WithoutADisplayUnderThePointerThePressPassesThrough) {
  addAnsweringMonitor(2, 50);
  machine.displaySystem.pointer = {-12.5, 7};
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
  set("VerboseKeyLog", true);
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: no display under cursor at {-12.5, 7}"));
}

TEST_F(BrightnessKeyAdjusterTest, TheVerboseLogNamesDisplayBackendAndCachedLevel) {
  set("VerboseKeyLog", true);
  addAnsweringMonitor(2, 50);
  press(5);
  press(5);
  addSilentMonitor(3);
  press(5);
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: cursor on [2] Monitor 2 backend=ddc cached=50",
                          "Brivane: cursor on [2] Monitor 2 backend=ddc cached=55",
                          "Brivane: cursor on [3] Monitor 3 backend=none cached=none"));
}

TEST_F(BrightnessKeyAdjusterTest, ThePressMovesTheHardware) {
  auto& channel = addAnsweringMonitor(2, 37);
  EXPECT_EQ(press(5), monitor2At(42));
  EXPECT_EQ(channel.current, 42);
  EXPECT_EQ(press(-2), monitor2At(40));
  EXPECT_EQ(channel.current, 40);
}

TEST_F(BrightnessKeyAdjusterTest, AStepLandsOnTheGrid) {
  struct Case {
    std::uint16_t from;
    Percent delta;
    Percent to;
  };
  for (const auto& [from, delta, to] : std::vector<Case>{{37, 5, 40},
                                                         {37, -5, 35},
                                                         {40, 5, 45},
                                                         {40, -5, 35},
                                                         {98, 5, 100},
                                                         {2, -5, 0},
                                                         {37, 1, 40},
                                                         {37, -80, 35}}) {
    ControllerBench bench;
    auto& channel = bench.addAnsweringMonitor(2, from);
    EXPECT_EQ(bench.controller.adjustDisplayUnderCursor(delta, true), monitor2At(to));
    EXPECT_EQ(channel.current, to);
  }
}

TEST_F(BrightnessKeyAdjusterTest, AMoveStopsAtTheEndsOfTheHardware) {
  addAnsweringMonitor(2, 97);
  EXPECT_EQ(press(5), monitor2At(100));
  EXPECT_EQ(press(-250), monitor2At(0));
}

TEST_F(BrightnessKeyAdjusterTest, APressPastAnEndShowsTheLevelAndWritesNothing) {
  auto& channel = addAnsweringMonitor(2, 0);
  EXPECT_EQ(press(-5), monitor2At(0));
  EXPECT_EQ(press(-5, true), monitor2At(0));
  EXPECT_EQ(channel.setCount, 0);
  press(100);
  const auto writes = channel.setCount;
  EXPECT_EQ(press(5), monitor2At(100));
  EXPECT_EQ(press(5, true), monitor2At(100));
  EXPECT_EQ(channel.setCount, writes);
}

TEST_F(BrightnessKeyAdjusterTest, AZeroChangeShowsTheLevelAndWritesNothing) {
  auto& channel = addAnsweringMonitor(2, 37);
  EXPECT_EQ(press(0), monitor2At(37));
  EXPECT_EQ(press(0, true), monitor2At(37));
  EXPECT_EQ(channel.setCount, 0);
}

TEST_F(BrightnessKeyAdjusterTest, AFailedHardwareWritePassesThrough) {
  auto& channel = addAnsweringMonitor(2, 37);
  channel.writeStatus = -1;
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
}

TEST_F(BrightnessKeyAdjusterTest, TheFirstPressOnAMonitorKnownToSpeakDDCConnects) {
  auto& channel = addSilentMonitor(2);
  channel.answers = true;
  store.saveSupportsDDC(true, 2);
  EXPECT_EQ(press(5), AdjustOutcome::connecting(2, "Monitor 2"));
  machine.time.runFor(fromSeconds(1));
  EXPECT_EQ(channel.getCount, 1);
  EXPECT_EQ(press(5), monitor2At(55));
}

TEST_F(BrightnessKeyAdjusterTest, AnUnknownMonitorPassesThroughWhileItIsBeingRead) {
  auto& channel = addSilentMonitor(2);
  channel.answers = true;
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
  machine.time.runFor(fromSeconds(1));
  EXPECT_EQ(channel.getCount, 1);
  EXPECT_EQ(press(5), monitor2At(55));
}

TEST_F(BrightnessKeyAdjusterTest, ASavedLevelIsSteppedFromWhileTheMonitorIsBeingRead) {
  auto& channel = addSilentMonitor(2);
  channel.answers = true;
  store.saveSupportsDDC(true, 2);
  store.saveNativeMax(100, 2);
  store.save(100, 2);
  EXPECT_EQ(press(5), monitor2At(100));
  machine.time.runFor(fromSeconds(1));
  EXPECT_EQ(channel.getCount, 1);
  EXPECT_EQ(channel.setCount, 0);
}

TEST_F(BrightnessKeyAdjusterTest, TheBuiltInPanelPassesThroughUnlessItIsDriven) {
  addAppleDisplay({1, 1552, 2, 3, true}, 0.5F);
  set("VerboseKeyLog", true);
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: cursor on [1] Apple 1 backend=appleDisplay cached=none"));
  EXPECT_EQ(machine.displayServices.levels[1], 0.5F);
  controller.setDrivesBuiltInPanel(true);
  EXPECT_EQ(press(5), AdjustOutcome::handled(1, "Apple 1", 55));
  EXPECT_EQ(machine.displayServices.levels[1], 0.55F);
  controller.setDrivesBuiltInPanel(false);
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
}

TEST_F(BrightnessKeyAdjusterTest, AnAppleDisplayStepsFromItsCurrentReading) {
  addAppleDisplay({1, 1552, 2, 3, false}, 0.5F);
  EXPECT_EQ(press(5), AdjustOutcome::handled(1, "Apple 1", 55));
  machine.displayServices.levels[1] = 0.2F;
  EXPECT_EQ(press(5), AdjustOutcome::handled(1, "Apple 1", 25));
}

TEST_F(BrightnessKeyAdjusterTest, AnUnreadableAppleDisplayStepsFromItsLastLevel) {
  addAppleDisplay({1, 1552, 2, 3, false}, 0.5F);
  press(5);
  machine.displayServices.getStatus = 1;
  EXPECT_EQ(press(5), AdjustOutcome::handled(1, "Apple 1", 60));
}

TEST_F(BrightnessKeyAdjusterTest, AnAppleDisplayWithoutAnyLevelPassesThrough) {
  addAppleDisplay({1, 1552, 2, 3, false}, 0.5F);
  machine.displayServices.getStatus = 1;
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
}

TEST_F(BrightnessKeyAdjusterTest, AnAppleDisplayThatRefusesTheWritePassesThrough) {
  addAppleDisplay({1, 1552, 2, 3, false}, 0.5F);
  machine.displayServices.setStatus = 1;
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
}

TEST_F(BrightnessKeyAdjusterTest, AnOverflowOfTheHardwareSumAborts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  addAnsweringMonitor(2, 50);
  EXPECT_EQ(press(greatest - 50), monitor2At(100));
  EXPECT_DEATH(press(greatest), "left the 64-bit range");
  EXPECT_EQ(press(least), monitor2At(0));
}

TEST_F(BrightnessKeyAdjusterTest, ADrivenBuiltInPanelWithoutAnyControlIsLeftToTheSystem) {
  machine.displaySystem.add({1, 1552, 2, 3, true}, "Panel");
  machine.pointAt(1);
  controller.setDrivesBuiltInPanel(true);
  EXPECT_EQ(press(5), AdjustOutcome::passThrough());
}

}  // namespace
}  // namespace brivane
