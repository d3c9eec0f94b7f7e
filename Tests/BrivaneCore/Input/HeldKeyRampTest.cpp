#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "BrivaneCore/Input/HeldKeyRamp.h"
#include "Tests/BrivaneCore/Input/StepNotes.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto up = BrightnessDirection::up;
constexpr auto down = BrightnessDirection::down;

struct HeldKeyRampTest : testing::Test {
  void pressShift() { machine.keys.flags = modifierFlag::shift | 0x100; }
  void releaseShift() { machine.keys.flags = modifierFlag::command | 0x100; }
  /// Keeps the main thread busy from `delay` on.
  void stall(milliseconds delay, milliseconds length) {
    machine.time.after(delay, [this, length] { machine.time.sleep(length); });
  }
  std::vector<std::string> stepsWithin(milliseconds length) {
    machine.time.runFor(length);
    return machine.notes.take();
  }

  FakeMachine machine;
  StepNotes steps{machine};
  std::unique_ptr<HeldKeyRamp> ramp = std::make_unique<HeldKeyRamp>(
      machine.time, machine.keys,
      [this](const Adjustment& adjustment, HotkeySource source) { steps.add(adjustment, source); });
};

TEST_F(HeldKeyRampTest, AHeldKeySweepsAfterThirtyFiveHundredthsInStepsOfFiveEverySixHundredths) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  EXPECT_THAT(stepsWithin(milliseconds(600)),
              ElementsAre("[410] step 5 carbonHotkey", "[470] step 5 carbonHotkey",
                          "[530] step 5 carbonHotkey", "[590] step 5 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, WithShiftTheStepsAreOnePoint) {
  pressShift();
  ramp->begin(up, HotkeySource::hidRelay);
  EXPECT_THAT(stepsWithin(milliseconds(500)),
              ElementsAre("[410] step 1 hidRelay", "[470] step 1 hidRelay"));
}

TEST_F(HeldKeyRampTest, DownIsNegativeAndNeverSnaps) {
  ramp->begin(down, HotkeySource::carbonHotkey);
  EXPECT_THAT(stepsWithin(milliseconds(500)),
              ElementsAre("[410] step -5 carbonHotkey", "[470] step -5 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, ATapMakesNoStepAtAll) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  machine.time.runFor(milliseconds(349));
  ramp->stop();
  EXPECT_THAT(stepsWithin(milliseconds(2000)), IsEmpty());
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(HeldKeyRampTest, ShiftIsReadWhenTheDelayIsOverAndNotAtThePress) {
  pressShift();
  ramp->begin(up, HotkeySource::carbonHotkey);
  machine.time.runFor(milliseconds(349));
  releaseShift();
  EXPECT_THAT(stepsWithin(milliseconds(70)), ElementsAre("[410] step 5 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, PressingShiftMidwaySwitchesToOnePointAndRestartsTheTiming) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  EXPECT_THAT(stepsWithin(milliseconds(440)), ElementsAre("[410] step 5 carbonHotkey"));
  pressShift();
  EXPECT_THAT(stepsWithin(milliseconds(50)), IsEmpty()) << "the tick at 470 gives nothing";
  EXPECT_THAT(stepsWithin(milliseconds(110)),
              ElementsAre("[530] step 1 carbonHotkey", "[590] step 1 carbonHotkey"));
  releaseShift();
  EXPECT_THAT(stepsWithin(milliseconds(120)), ElementsAre("[710] step 5 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, ASwitchOnALateTickTimesTheNextFromThere) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  // The tick of 470 comes at 500; the new ticker counts from then on.
  stall(milliseconds(420), milliseconds(80));
  machine.time.runFor(milliseconds(415));
  machine.notes.take();
  pressShift();
  EXPECT_THAT(stepsWithin(milliseconds(215)),
              ElementsAre("[560] step 1 carbonHotkey", "[620] step 1 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, TheRemainderOfAStepIsDroppedWhenTheSpeedChanges) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  // 410 comes at 440: 7.5 points, of which 2.5 are left when Shift goes down.
  stall(milliseconds(400), milliseconds(40));
  EXPECT_THAT(stepsWithin(milliseconds(445)), ElementsAre("[440] step 5 carbonHotkey"));
  pressShift();
  EXPECT_THAT(stepsWithin(milliseconds(90)), ElementsAre("[530] step 1 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, ALateTickMakesUpForTheTime) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  // 410 comes at 500: 150 ms are 12.5 points, of which 2.5 wait for the tick at 530 (30 ms, 2.5
  // points more).
  stall(milliseconds(400), milliseconds(100));
  EXPECT_THAT(stepsWithin(milliseconds(540)),
              ElementsAre("[500] step 10 carbonHotkey", "[530] step 5 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, AStalledMainThreadMakesNoJump) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  stall(milliseconds(400), milliseconds(2000));
  EXPECT_THAT(stepsWithin(milliseconds(2420)), ElementsAre("[2400] step 30 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, ATickWithLessThanAStepGivesNothingAndKeepsTheRest) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  // The ticker has its ticks at 2390, 2450 and 2510. After the stall's, at 2400, 50 ms are 4.17
  // points, and 60 ms later there are 9.17.
  stall(milliseconds(400), milliseconds(2000));
  EXPECT_THAT(stepsWithin(milliseconds(2520)),
              ElementsAre("[2400] step 30 carbonHotkey", "[2510] step 5 carbonHotkey"));
  // With those that were left, 70 ms are 10 points.
  stall(milliseconds(40), milliseconds(20));
  EXPECT_THAT(stepsWithin(milliseconds(80)), ElementsAre("[2580] step 10 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, BeginningAgainStartsOverWithOneTimer) {
  ramp->begin(up, HotkeySource::carbonHotkey);
  machine.time.runFor(milliseconds(300));
  EXPECT_EQ(machine.time.timerCount(), 1u);
  ramp->begin(down, HotkeySource::hidRelay);
  EXPECT_EQ(machine.time.timerCount(), 1u);
  EXPECT_THAT(stepsWithin(milliseconds(420)), ElementsAre("[710] step -5 hidRelay"));
  EXPECT_EQ(machine.time.timerCount(), 1u);
  ramp->begin(up, HotkeySource::carbonHotkey);
  EXPECT_EQ(machine.time.timerCount(), 1u);
  EXPECT_THAT(stepsWithin(milliseconds(400)), IsEmpty()) << "the sweep before is over";
  EXPECT_THAT(stepsWithin(milliseconds(20)), ElementsAre("[1130] step 5 carbonHotkey"));
}

TEST_F(HeldKeyRampTest, StoppingEndsASweepAndMayBeRepeated) {
  ramp->stop();
  ramp->begin(up, HotkeySource::carbonHotkey);
  machine.time.runFor(milliseconds(420));
  machine.notes.take();
  ramp->stop();
  ramp->stop();
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(stepsWithin(milliseconds(1000)), IsEmpty());
}

TEST_F(HeldKeyRampTest, DroppingARampLeavesNoTimer) {
  for (const auto held : {milliseconds(100), milliseconds(420)}) {
    ramp = std::make_unique<HeldKeyRamp>(machine.time, machine.keys,
                                         [this](const Adjustment& adjustment, HotkeySource source) {
                                           steps.add(adjustment, source);
                                         });
    ramp->begin(up, HotkeySource::carbonHotkey);
    machine.time.runFor(held);
    machine.notes.take();
    ramp.reset();
    EXPECT_EQ(machine.time.timerCount(), 0u);
    EXPECT_THAT(stepsWithin(milliseconds(1000)), IsEmpty());
  }
}

TEST_F(HeldKeyRampTest, AStepMayStopTheRamp) {
  std::unique_ptr<HeldKeyRamp> own;
  int taken = 0;
  own = std::make_unique<HeldKeyRamp>(machine.time, machine.keys,
                                      [&](const Adjustment&, HotkeySource) {
                                        ++taken;
                                        own->stop();
                                      });
  own->begin(up, HotkeySource::carbonHotkey);
  machine.time.runFor(milliseconds(2000));
  EXPECT_EQ(taken, 1);
}

TEST_F(HeldKeyRampTest, AStepMayRestartTheRamp) {
  std::unique_ptr<HeldKeyRamp> own;
  own = std::make_unique<HeldKeyRamp>(machine.time, machine.keys,
                                      [&](const Adjustment& adjustment, HotkeySource source) {
                                        steps.add(adjustment, source);
                                        own->begin(down, HotkeySource::hidRelay);
                                      });
  own->begin(up, HotkeySource::carbonHotkey);
  EXPECT_THAT(stepsWithin(milliseconds(900)),
              ElementsAre("[410] step 5 carbonHotkey", "[820] step -5 hidRelay"));
  EXPECT_EQ(machine.time.timerCount(), 1u);
}

TEST_F(HeldKeyRampTest, FromTheBottomToTheTopTakesOneSecondAndAFifthOrSixSeconds) {
  Percent level = 0;
  HeldKeyRamp own(machine.time, machine.keys,
                  [&](const Adjustment& step, HotkeySource) { level += step.delta; });
  own.begin(up, HotkeySource::carbonHotkey);
  machine.time.runFor(milliseconds(350 + 1200));
  EXPECT_EQ(level, 100);
  level = 0;
  pressShift();
  own.begin(up, HotkeySource::carbonHotkey);
  machine.time.runFor(milliseconds(350 + 6000));
  EXPECT_EQ(level, 100);
}

}  // namespace
}  // namespace brivane
