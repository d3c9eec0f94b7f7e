#include <gmock/gmock.h>

#include <limits>

#include "BrivaneCore/Policy/BrightnessKeyAdjuster.h"
#include "Tests/Support/ControllerBench.h"

// The software ends of the travel, first with the real effects, then decision by decision.

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::IsEmpty;

constexpr bool step = true;

struct SoftwareTravel : testing::Test, ControllerBench {
  Percent press(Percent delta, bool snapToStep = false) {
    const auto outcome = controller.adjustDisplayUnderCursor(delta, snapToStep);
    EXPECT_EQ(outcome, AdjustOutcome::handled(2, "Monitor 2", outcome.level));
    return outcome.level;
  }

  float white() { return machine.gamma.tables[2].red.back(); }
};

TEST_F(SoftwareTravel, PressingDownAtHardwareZeroDimsAndPressingUpRetraces) {
  auto& channel = addAnsweringMonitor(2, 0);
  EXPECT_EQ(press(-5), -5);
  EXPECT_EQ(press(-5), -10);
  EXPECT_THAT(white(), FloatEq(0.918F));
  EXPECT_EQ(press(5), -5);
  EXPECT_EQ(press(5), 0);
  EXPECT_EQ(white(), 1.0F);
  EXPECT_EQ(channel.setCount, 0);
  EXPECT_EQ(press(5), 5);
  EXPECT_EQ(channel.current, 5);
}

TEST_F(SoftwareTravel, PressingUpAtHardware100BrightensTo200AndNoFurther) {
  auto& channel = addAnsweringMonitor(2, 100);
  EXPECT_EQ(press(5), 105);
  EXPECT_EQ(press(90), 195);
  EXPECT_EQ(press(5), 200);
  EXPECT_EQ(press(5), 200);
  EXPECT_EQ(press(-95), 105);
  EXPECT_EQ(press(-5), 100);
  EXPECT_EQ(channel.setCount, 0);
  EXPECT_EQ(press(-5), 95);
  EXPECT_EQ(channel.current, 95);
}

TEST_F(SoftwareTravel, OneWayThroughAllThreeRangesAndBack) {
  addAnsweringMonitor(2, 50);
  std::vector<Percent> down, up;
  for (int presses = 0; presses < 32; ++presses) down.push_back(press(-5, step));
  for (int presses = 0; presses < 62; ++presses) up.push_back(press(5, step));
  EXPECT_EQ(down.front(), 45);
  EXPECT_EQ(down.back(), -100);
  for (std::size_t index = 0; index < 60; ++index) {
    EXPECT_EQ(up[index], -95 + 5 * static_cast<Percent>(index));
  }
  EXPECT_EQ(up.back(), 200);
}

TEST_F(SoftwareTravel, AMonitorWithoutAGammaTableHasItsHardwareRangeOnly) {
  auto& channel = addAnsweringMonitor(2, 0);
  machine.gamma.capacities.clear();
  EXPECT_EQ(press(-5), 0);
  EXPECT_EQ(press(100), 100);
  EXPECT_EQ(press(5), 100);
  EXPECT_EQ(channel.setCount, 2);
}

TEST_F(SoftwareTravel, ALateMonitorStaysWhereKeysMoveIt) {
  auto& dark = addLateMonitor(2, 30, 0);
  EXPECT_EQ(press(-5), -5);
  controller.restoreLateMonitors();
  EXPECT_EQ(dark.current, 0);
  EXPECT_EQ(press(100), 0);
  dark.current = 100;
  store.save(30, 2);
  controller.invalidate();
  controller.brightness(2);
  EXPECT_EQ(press(5), 105);
  controller.restoreLateMonitors();
  EXPECT_EQ(dark.current, 100);
}

TEST_F(SoftwareTravel, ALateMonitorThatWasDimmedAllAlongGetsItsSavedLevel) {
  auto& channel = addAnsweringMonitor(2, 0);
  EXPECT_EQ(press(-5), -5);
  store.save(0, 2);
  controller.invalidate();
  channel.current = 90;
  controller.brightness(2);
  EXPECT_EQ(press(-5), -10);
  controller.restoreLateMonitors();
  EXPECT_EQ(channel.current, 0);
}

TEST_F(SoftwareTravel, DisplaysWithHeadroomAreBrightenedBeyondWhite) {
  addAnsweringMonitor(2, 100);
  machine.displaySystem.allScreens[0].potentialHeadroom = 2.0;
  EXPECT_EQ(press(50), 150);
  EXPECT_EQ(white(), 1.5F);
}

TEST_F(SoftwareTravel, ADisplayWithoutHardwareControlPassesThroughEvenWithAGammaTable) {
  addSilentMonitor(2);
  EXPECT_EQ(controller.adjustDisplayUnderCursor(-5, step), AdjustOutcome::passThrough());
  EXPECT_THAT(machine.gamma.calls, IsEmpty());
}

struct SoftwareDecision : testing::Test, FakeEffectsBench {
  AdjustOutcome press(Percent delta, bool snapToStep = false) {
    calls.clear();
    return controller.adjustDisplayUnderCursor(delta, snapToStep);
  }

  FakeBus::Channel& start(std::uint16_t percent, std::int64_t depth, std::int64_t boost) {
    auto& channel = bench.addAnsweringMonitor(2, percent);
    dimmer->amounts[2] = depth;
    gammaBrightener->amounts[2] = boost;
    return channel;
  }
};

AdjustOutcome shows(Percent level) {
  return AdjustOutcome::handled(2, "Monitor 2", level);
}

struct DecisionCase {
  std::uint16_t percent;
  std::int64_t depth;
  std::int64_t boost;
  Percent delta;
  bool snapToStep;
  Percent level;
  std::string call;
};

TEST(SoftwareRanges, EachRangeTakesItsOwnPresses) {
  const std::vector<DecisionCase> cases = {
      // Dimming: entered downwards at hardware 0, kept while there is depth.
      {0, 0, 0, -5, false, -5, "dimmer apply 5 to 2"},
      {0, 0, 0, -1, false, -1, "dimmer apply 1 to 2"},
      {0, 0, 0, -1, step, -5, "dimmer apply 5 to 2"},
      {0, 7, 0, -5, step, -12, "dimmer apply 12 to 2"},
      {0, 7, 0, 5, step, -2, "dimmer apply 2 to 2"},
      {0, 7, 0, 1, step, -2, "dimmer apply 2 to 2"},
      {0, 7, 0, 0, step, -2, "dimmer apply 2 to 2"},
      {0, 7, 0, 0, false, -7, "dimmer apply 7 to 2"},
      {0, 7, 0, -3, false, -10, "dimmer apply 10 to 2"},
      {0, 7, 0, 7, false, 0, "dimmer apply 0 to 2"},
      {0, 7, 0, 50, false, 0, "dimmer apply 0 to 2"},
      {0, 98, 0, -5, step, -100, "dimmer apply 100 to 2"},
      {0, 100, 0, -5, false, -100, "dimmer apply 100 to 2"},
      {60, 7, 0, -5, false, -12, "dimmer apply 12 to 2"},
      // Brightening: entered upwards at hardware 100, kept while there is a boost.
      {100, 0, 0, 5, false, 105, "gamma apply 5 to 2"},
      {100, 0, 0, 1, false, 101, "gamma apply 1 to 2"},
      {100, 0, 0, 1, step, 105, "gamma apply 5 to 2"},
      {100, 0, 7, 5, step, 112, "gamma apply 12 to 2"},
      {100, 0, 7, -5, step, 102, "gamma apply 2 to 2"},
      {100, 0, 7, 0, step, 102, "gamma apply 2 to 2"},
      {100, 0, 7, 0, false, 107, "gamma apply 7 to 2"},
      {100, 0, 5, -5, false, 100, "gamma apply 0 to 2"},
      {100, 0, 5, -50, false, 100, "gamma apply 0 to 2"},
      {100, 0, 98, 5, step, 200, "gamma apply 100 to 2"},
      {60, 0, 7, 5, false, 112, "gamma apply 12 to 2"},
      // Both at once, which the program never does: the display counts as dimmed.
      {100, 7, 7, 5, false, -2, "dimmer apply 2 to 2"},
  };
  for (const auto& [percent, depth, boost, delta, snapToStep, level, call] : cases) {
    FakeEffectsBench effects;
    auto& channel = effects.bench.addAnsweringMonitor(2, percent);
    effects.dimmer->amounts[2] = depth;
    effects.gammaBrightener->amounts[2] = boost;
    EXPECT_EQ(effects.controller.adjustDisplayUnderCursor(delta, snapToStep), shows(level)) << call;
    EXPECT_THAT(effects.calls, ElementsAre(call));
    EXPECT_EQ(channel.setCount, 0) << call;
  }
}

TEST(SoftwareRanges, AZeroChangeEntersNeither) {
  for (const std::uint16_t percent : {std::uint16_t{0}, std::uint16_t{100}}) {
    FakeEffectsBench effects;
    effects.bench.addAnsweringMonitor(2, percent);
    for (const bool snapToStep : {false, true}) {
      EXPECT_EQ(effects.controller.adjustDisplayUnderCursor(0, snapToStep), shows(percent));
    }
    EXPECT_THAT(effects.calls, IsEmpty());
  }
}

TEST_F(SoftwareDecision, WithDimmingOffAPressDownAtZeroDoesNothing) {
  const auto& channel = start(0, 0, 0);
  bench.set("SubZeroDimming", false);
  EXPECT_EQ(press(-5), shows(0));
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_EQ(channel.setCount, 0);
}

TEST_F(SoftwareDecision, WithDimmingOffAnEarlierDepthIsLeftToTheHardwareWrite) {
  start(0, 20, 0);
  bench.set("SubZeroDimming", false);
  EXPECT_EQ(press(5), shows(5));
  EXPECT_THAT(calls, ElementsAre("dimmer restore 2", "gamma restore 2", "extended restore 2"));
}

TEST_F(SoftwareDecision, AnUnsupportedEffectIsNotUsed) {
  start(0, 0, 0);
  dimmer->supported = false;
  gammaBrightener->supported = false;
  EXPECT_EQ(press(-5), shows(0));
  EXPECT_EQ(press(100), shows(100));
  EXPECT_EQ(press(5), shows(100));
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(SoftwareDecision, WithBrighteningOffAPressUpAt100DoesNothing) {
  const auto& channel = start(100, 0, 0);
  bench.set("BrightenPastMaximum", false);
  EXPECT_EQ(press(5), shows(100));
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_EQ(channel.setCount, 0);
}

TEST_F(SoftwareDecision, WithBrighteningOffAnEarlierBoostIsLeftToTheHardwareWrite) {
  start(100, 0, 40);
  bench.set("BrightenPastMaximum", false);
  EXPECT_EQ(press(5), shows(100));
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_EQ(press(-5), shows(95));
  EXPECT_THAT(calls, ElementsAre("dimmer restore 2", "gamma restore 2", "extended restore 2"));
}

TEST_F(SoftwareDecision, AnUnsupportedEffectDoesNotClaimAPressEvenWithAnAmount) {
  start(50, 7, 7);
  dimmer->supported = false;
  gammaBrightener->supported = false;
  EXPECT_EQ(press(5), shows(55));
  EXPECT_THAT(calls, ElementsAre("dimmer restore 2", "gamma restore 2", "extended restore 2"));
}

TEST_F(SoftwareDecision, AHardwareStepAlsoHandsABoostOverFirst) {
  start(50, 0, 30);
  bench.set("BrightenPastMaximum", false);
  bench.machine.displaySystem.allScreens[0].potentialHeadroom = 2.0;
  EXPECT_EQ(press(5), shows(55));
  EXPECT_THAT(calls, ElementsAre("extended apply 30 to 2", "gamma relinquish 2", "dimmer restore 2",
                                 "gamma restore 2", "extended restore 2"));
}

TEST_F(SoftwareDecision, AFailedBoostFallsBackToTheHardware) {
  const auto& channel = start(100, 0, 0);
  gammaBrightener->accepts = false;
  EXPECT_EQ(press(5), shows(100));
  EXPECT_THAT(calls, ElementsAre("gamma apply 5 to 2"));
  EXPECT_EQ(channel.setCount, 0);
  gammaBrightener->amounts[2] = 40;
  EXPECT_EQ(press(-5), shows(95));
  EXPECT_THAT(calls, ElementsAre("gamma apply 35 to 2", "dimmer restore 2", "gamma restore 2",
                                 "extended restore 2"));
}

TEST_F(SoftwareDecision, AFailedDimmingIsStillShown) {
  start(0, 0, 0);
  dimmer->accepts = false;
  EXPECT_EQ(press(-5), shows(-5));
  EXPECT_EQ(press(-5), shows(-5));
}

TEST_F(SoftwareDecision, AnOverflowOfASoftwareSumAborts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  constexpr Percent greatest = std::numeric_limits<Percent>::max();
  constexpr Percent least = std::numeric_limits<Percent>::min();
  start(0, 0, 0);
  EXPECT_DEATH(press(least), "left the 64-bit range");
  dimmer->amounts[2] = 1;
  EXPECT_DEATH(press(-greatest), "left the 64-bit range");
  dimmer->amounts[2] = 0;
  gammaBrightener->amounts[2] = 1;
  EXPECT_DEATH(press(greatest), "left the 64-bit range");
}

}  // namespace
}  // namespace brivane
