#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "BrivaneCore/Input/RampEngine.h"

namespace brivane {
namespace {

using Profile = RampEngine::RampProfile;
using Step = RampEngine::RampStep;

constexpr auto coarse = RampEngine::coarse;
constexpr auto fine = RampEngine::fine;

TEST(RampEngine, OneKeyStepIsFivePoints) {
  EXPECT_EQ(RampEngine::step, 5);
}

TEST(RampEngine, BothProfilesTickEverySixtyMilliseconds) {
  EXPECT_EQ(coarse, (Profile{5, 1.2}));
  EXPECT_EQ(fine, (Profile{1, 6.0}));
  EXPECT_EQ(coarse.repeatInterval(), 0.06);
  EXPECT_EQ(fine.repeatInterval(), 0.06);
  EXPECT_EQ((Profile{2, 3.0}.repeatInterval()), 0.06);
  EXPECT_NE(coarse, (Profile{5, 1.3}));
}

TEST(RampEngine, TheLargestStepIsWhatFourTenthsOfASecondGiveOnTheGrid) {
  EXPECT_EQ(RampEngine::maximumRampStep(coarse), 30);
  EXPECT_EQ(RampEngine::maximumRampStep(fine), 6);
  EXPECT_EQ(RampEngine::maximumRampStep({7, 1.2}), 28);
  EXPECT_EQ(RampEngine::maximumRampStep({5, 100.0}), 5) << "never less than one step";
  EXPECT_EQ(RampEngine::maximumRampStep({5, -1.0}), 5);
}

TEST(RampEngine, ACoarseTickOnTimeIsOneStep) {
  EXPECT_EQ(RampEngine::rampDelta(0.06, 0, coarse), (Step{5, 0}));
}

TEST(RampEngine, ATickThatComesEarlyCarriesItsTimeOver) {
  const auto [delta, carry] = RampEngine::rampDelta(0.059, 0, coarse);
  EXPECT_EQ(delta, 0);
  EXPECT_NEAR(carry, 4.9167, 0.0001);
  EXPECT_EQ(RampEngine::rampDelta(0.06, carry, coarse).delta, 5);
  EXPECT_EQ(RampEngine::rampDelta(0.0611, carry, coarse).delta, 10);
}

TEST(RampEngine, AFineTickOnTimeIsOnePoint) {
  EXPECT_EQ(RampEngine::rampDelta(0.06, 0, fine), (Step{1, 0}));
}

TEST(RampEngine, ATickThatComesLateIsCappedAndDropsTheRest) {
  EXPECT_EQ(RampEngine::rampDelta(2, 0, coarse), (Step{30, 0}));
  EXPECT_EQ(RampEngine::rampDelta(2, 3.5, coarse), (Step{30, 0}));
  EXPECT_EQ(RampEngine::rampDelta(1, 0, fine), (Step{6, 0}));
}

TEST(RampEngine, TheLargestStepItselfIsNoExcess) {
  const auto [delta, carry] = RampEngine::rampDelta(0.4, 0, coarse);
  EXPECT_EQ(delta, 30);
  EXPECT_NEAR(carry, 3.3333, 0.0001);
}

TEST(RampEngine, NothingHappensUnlessTimePasses) {
  for (const double elapsed : {0.0, -0.0, -1.0, std::nan(""), -1e300}) {
    EXPECT_EQ(RampEngine::rampDelta(elapsed, 4.5, coarse), (Step{0, 4.5})) << elapsed;
  }
}

TEST(RampEngine, AWholeSweepTakesAsLongAsItsProfileSays) {
  for (const auto& [profile, ticks] : {std::pair{coarse, 20}, std::pair{fine, 100}}) {
    Step step;
    std::int64_t level = 0;
    for (int tick = 0; tick < ticks; ++tick) {
      step = RampEngine::rampDelta(0.06, step.carry, profile);
      level += step.delta;
    }
    EXPECT_EQ(level, 100);
  }
}

TEST(RampEngine, TheLeastNumberOfPointsIsOneLargeStep) {
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  EXPECT_EQ(RampEngine::rampDelta(1, static_cast<double>(least), {1, 1.2}), (Step{least, 0}));
}

TEST(RampEngine, AProfileThatGivesNoNumberAborts) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(RampEngine::maximumRampStep({5, 0}), "outside the 64-bit range");
  EXPECT_DEATH(RampEngine::maximumRampStep({5, std::nan("")}), "outside the 64-bit range");
  EXPECT_DEATH(RampEngine::maximumRampStep({5, 1e-300}), "outside the 64-bit range");
  EXPECT_DEATH(RampEngine::maximumRampStep({0, 1.2}), "grid of 0");
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_DEATH(RampEngine::rampDelta(infinity, 0, coarse), "outside the 64-bit range");
  EXPECT_DEATH(RampEngine::rampDelta(1, std::nan(""), coarse), "outside the 64-bit range");
  EXPECT_DEATH(RampEngine::rampDelta(1, 0, {0, 1.2}), "grid of 0");
  constexpr auto least = static_cast<double>(std::numeric_limits<std::int64_t>::min());
  EXPECT_DEATH(RampEngine::rampDelta(1, least, {-1, 1.2}), "number of steps outside");
}

}  // namespace
}  // namespace brivane
