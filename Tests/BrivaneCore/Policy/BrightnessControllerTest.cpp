#include <gmock/gmock.h>

#include "BrivaneCore/Policy/BrightnessController.h"
#include "Tests/Support/ControllerBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const EffectCalls monitor2EffectsEnded = {"dimmer restore 2", "gamma restore 2",
                                          "extended restore 2"};

struct BrightnessControllerTest : testing::Test, FakeEffectsBench {
  FakeMachine& machine = bench.machine;
};

TEST_F(BrightnessControllerTest, TheLevelIsTheDimmingThenTheBoostThenTheHardware) {
  struct Case {
    std::int64_t depth, boost, extendedBoost;
    Percent level;
  };
  bench.addAnsweringMonitor(2, 55);
  for (const auto& [depth, boost, extendedBoost, level] : std::vector<Case>{{0, 0, 0, 55},
                                                                            {20, 0, 0, -20},
                                                                            {20, 30, 40, -20},
                                                                            {1, 0, 0, -1},
                                                                            {0, 30, 0, 130},
                                                                            {0, 0, 40, 140},
                                                                            {0, 30, 40, 140},
                                                                            {0, 50, 40, 150},
                                                                            {0, 1, 0, 101}}) {
    dimmer->amounts[2] = depth;
    gammaBrightener->amounts[2] = boost;
    extendedBrightener->amounts[2] = extendedBoost;
    EXPECT_EQ(controller.level(2), level);
  }
}

TEST_F(BrightnessControllerTest, ADisplayThatWasNotReadHasNoLevel) {
  bench.addSilentMonitor(2);
  EXPECT_EQ(controller.level(2), std::nullopt);
}

TEST_F(BrightnessControllerTest, SettingTheHardwareEndsEverySoftwareEffectOnThatDisplay) {
  auto& channel = bench.addAnsweringMonitor(2, 55);
  EXPECT_TRUE(controller.setBrightness(30, 2));
  EXPECT_EQ(channel.current, 30);
  EXPECT_EQ(calls, monitor2EffectsEnded);
  EXPECT_EQ(controller.brightness(2), 30);
}

TEST_F(BrightnessControllerTest, SettingTheHardwareLimitsThePercent) {
  auto& channel = bench.addAnsweringMonitor(2, 55);
  EXPECT_TRUE(controller.setBrightness(250, 2));
  EXPECT_EQ(channel.current, 100);
  EXPECT_TRUE(controller.setBrightness(-5, 2));
  EXPECT_EQ(channel.current, 0);
}

TEST_F(BrightnessControllerTest, ReadsAMonitorAndNamesItsBackend) {
  auto& channel = bench.addSilentMonitor(2);
  EXPECT_EQ(controller.backend(2), BrightnessBackendKind::none);
  EXPECT_EQ(controller.brightness(2), std::nullopt);
  EXPECT_EQ(controller.probe(2), std::nullopt);
  channel.answers = true;
  channel.current = 128;
  channel.max = 255;
  EXPECT_EQ(controller.probe(2), (VCPReading{128, 255}));
  EXPECT_EQ(controller.brightness(2), 50);
  EXPECT_EQ(controller.backend(2), BrightnessBackendKind::ddc);
}

TEST_F(BrightnessControllerTest, OffersOneTargetPerOnlineDisplay) {
  bench.addAnsweringMonitor(2, 55);
  bench.addSilentMonitor(3);
  EXPECT_THAT(controller.refreshTargets(),
              ElementsAre(DisplayTarget{2, "Monitor 2", false, PercentRange{0, 100}},
                          DisplayTarget{3, "Monitor 3", false, std::nullopt}));
}

TEST_F(BrightnessControllerTest, OnlyAnExternalDisplayThatDoesNotAnswerIsRetried) {
  bench.addAppleDisplay({1, 1552, 2, 3, false}, 0.5F);
  machine.displaySystem.add({4, 0, 0, 0, true}, "Built-in");
  bench.addAnsweringMonitor(2, 55);
  bench.addSilentMonitor(3);
  EXPECT_TRUE(controller.hasUnresolvedDisplays());
  controller.refreshTargets();
  machine.time.runFor(fromSeconds(0.9));
  for (const DisplayID display : {1U, 2U, 4U}) {
    EXPECT_EQ(controller.retryStatus(display), (RetryStatus{false, 0, std::nullopt})) << display;
  }
  EXPECT_EQ(controller.retryStatus(3), (RetryStatus{true, 1, 1}));
}

TEST_F(BrightnessControllerTest, RetryingAtOnceReachesAMonitorThatAnswersAgain) {
  auto& channel = bench.addSilentMonitor(3);
  for (const bool byUser : {true, false}) {
    channel.answers = false;
    controller.invalidate();
    controller.refreshTargets();
    machine.time.runFor(fromSeconds(30));
    EXPECT_TRUE(controller.hasUnresolvedDisplays());
    channel.answers = true;
    machine.systemLog.lines.clear();
    byUser ? controller.retryNow() : controller.retryPendingNow();
    machine.time.runFor(fromSeconds(0.2));
    EXPECT_FALSE(controller.hasUnresolvedDisplays()) << byUser;
    // Only the user's own retry forgets the outage, whose end would be logged.
    EXPECT_EQ(machine.systemLog.lines.size(), byUser ? 0U : 1U);
  }
}

TEST_F(BrightnessControllerTest, FollowsTheMonitorsOwnButtons) {
  auto& channel = bench.addAnsweringMonitor(2, 55);
  channel.current = 30;
  controller.resyncCache();
  machine.time.runFor(fromSeconds(1));
  EXPECT_EQ(controller.level(2), 30);
}

TEST_F(BrightnessControllerTest, RestoresSavedLevelsAndThenCallsBack) {
  auto& channel = bench.addSilentMonitor(2);
  channel.answers = true;
  bench.store.save(80, 2);
  bool isDone = false;
  controller.restoreSavedBrightness([&isDone] { isDone = true; });
  machine.time.runFor(fromSeconds(1));
  EXPECT_TRUE(isDone);
  EXPECT_EQ(channel.current, 80);
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(BrightnessControllerTest, ReappliesAllThreeEffectsEvenWhenOneFails) {
  const EffectCalls all = {"dimmer reapply", "gamma reapply", "extended reapply"};
  EXPECT_TRUE(controller.reapplyGammaRamps());
  EXPECT_EQ(calls, all);
  for (bool* accepts :
       {&dimmer->accepts, &gammaBrightener->accepts, &extendedBrightener->accepts}) {
    calls.clear();
    *accepts = false;
    EXPECT_FALSE(controller.reapplyGammaRamps());
    EXPECT_EQ(calls, all);
    *accepts = true;
  }
}

TEST_F(BrightnessControllerTest, RestoresAllThreeEffectsInOrder) {
  controller.restoreAllExtendedRange();
  EXPECT_THAT(calls,
              ElementsAre("dimmer restore all", "gamma restore all", "extended restore all"));
}

TEST_F(BrightnessControllerTest, InvalidatingKeepsTheBaselinesOfDisplaysWithAnEffect) {
  for (const DisplayID display : {1U, 2U, 3U, 4U}) {
    machine.gamma.add(display, 16);
    bench.baselines->baseline(display);
  }
  dimmer->amounts[1] = 1;
  gammaBrightener->amounts[2] = 1;
  extendedBrightener->amounts[3] = 1;
  controller.invalidate();
  EXPECT_TRUE(bench.baselines->cached(1));
  EXPECT_TRUE(bench.baselines->cached(2));
  EXPECT_TRUE(bench.baselines->cached(3));
  EXPECT_FALSE(bench.baselines->cached(4));
}

TEST_F(BrightnessControllerTest, InvalidatingForgetsLevelsAndTheChoiceOfBrightener) {
  bench.addAnsweringMonitor(2, 100);
  controller.setLevel(130, 2);
  calls.clear();
  machine.displaySystem.allScreens[0].potentialHeadroom = 2.0;
  controller.invalidate();
  controller.setLevel(140, 2);
  EXPECT_THAT(
      calls, ElementsAre("extended apply 30 to 2", "gamma relinquish 2", "extended apply 40 to 2"));
  extendedBrightener->amounts.clear();
  EXPECT_EQ(controller.level(2), std::nullopt);
}

TEST(BrightnessController, BuildsTheEffectsThatItIsNotGiven) {
  ControllerBench bench;
  bench.addAnsweringMonitor(2, 0);
  EXPECT_TRUE(bench.controller.setLevel(-100, 2));
  EXPECT_FLOAT_EQ(bench.machine.gamma.tables[2].red.back(), 0.18F);
  EXPECT_TRUE(bench.controller.setLevel(200, 2));
  EXPECT_EQ(bench.machine.gamma.written[2].red.size(), 256U);
  EXPECT_EQ(bench.machine.gamma.tables[2].red.back(), 1.0F);
  bench.machine.displaySystem.allScreens[0].potentialHeadroom = 16;
  bench.controller.invalidate();
  EXPECT_TRUE(bench.controller.setLevel(200, 2));
  EXPECT_EQ(bench.machine.gamma.written[2].red.size(), 128U);
  EXPECT_EQ(bench.machine.gamma.tables[2].red.back(), 4.0F);
}

TEST(BrightnessController, UsesAGivenFactory) {
  EffectCalls calls;
  const auto only = std::make_shared<FakeBrightening>("only", calls);
  const auto measure = [](DisplayID) { return std::optional(1.0); };
  const auto factory = std::make_shared<DisplayBrighteningFactory>(only, only, measure);
  ControllerBench bench(BrightnessEffects{nullptr, nullptr, nullptr, factory});
  bench.addAnsweringMonitor(2, 100);
  EXPECT_TRUE(bench.controller.setLevel(130, 2));
  EXPECT_THAT(calls, ElementsAre("only apply 30 to 2"));
}

TEST(BrightnessController, ARealEffectEndsWithAnExplicitHardwareLevel) {
  ControllerBench bench;
  bench.addAnsweringMonitor(2, 0);
  bench.controller.setLevel(-50, 2);
  EXPECT_TRUE(bench.controller.setLevel(40, 2));
  EXPECT_EQ(bench.machine.gamma.tables[2].red.back(), 1.0F);
  EXPECT_EQ(bench.controller.level(2), 40);
}

TEST(BrightnessController, ClearsWhatAnEarlierRunLeftInForce) {
  FakeGammaTables tables;
  tables.add(1, 16);
  BrightnessController::restoreExtendedRangeLeftByAPreviousRun(tables);
  EXPECT_THAT(tables.calls, ElementsAre("restore all", "restore all"));
}

TEST(BrightnessController, HeadroomIsThatOfTheDisplaysScreen) {
  FakeDisplaySystem displays;
  displays.add({1}, "One");
  displays.add({2}, "Two");
  displays.allScreens[1].potentialHeadroom = 2.5;
  EXPECT_EQ(BrightnessController::potentialHeadroom(displays, 1), 1.0);
  EXPECT_EQ(BrightnessController::potentialHeadroom(displays, 2), 2.5);
  EXPECT_EQ(BrightnessController::potentialHeadroom(displays, 3), std::nullopt);
  EXPECT_EQ(BrightnessController::potentialHeadroom(displays, 0), std::nullopt);
}

TEST(BrightnessController, AScreenWithoutANumberCountsAsDisplayZero) {
  FakeDisplaySystem displays;
  displays.add({1}, "One");
  displays.allScreens[0].number.reset();
  displays.allScreens[0].potentialHeadroom = 1.5;
  EXPECT_EQ(BrightnessController::potentialHeadroom(displays, 0), 1.5);
  EXPECT_EQ(BrightnessController::potentialHeadroom(displays, 1), std::nullopt);
}

}  // namespace
}  // namespace brivane
