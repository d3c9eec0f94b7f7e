#include <gtest/gtest.h>

#include <limits>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"

namespace brivane {
namespace {

constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
constexpr auto largest = std::numeric_limits<std::int64_t>::max();

TEST(BrightnessDirection, OneKeyStepIsFivePointsUpOrDown) {
  EXPECT_EQ(delta(BrightnessDirection::up), 5);
  EXPECT_EQ(delta(BrightnessDirection::down), -5);
}

TEST(BrightnessDirection, UpComesBeforeDown) {
  EXPECT_LT(BrightnessDirection::up, BrightnessDirection::down);
}

TEST(AdjustOutcome, EqualWhenTheCaseAndItsWholePayloadAreEqual) {
  const auto handled = AdjustOutcome::handled(7, "Left", 40);
  EXPECT_EQ(handled, AdjustOutcome::handled(7, "Left", 40));
  EXPECT_NE(handled, AdjustOutcome::handled(8, "Left", 40));
  EXPECT_NE(handled, AdjustOutcome::handled(7, "Right", 40));
  EXPECT_NE(handled, AdjustOutcome::handled(7, "Left", 41));
  EXPECT_EQ(AdjustOutcome::connecting(7, "Left"), AdjustOutcome::connecting(7, "Left"));
  EXPECT_NE(AdjustOutcome::connecting(7, "Left"), AdjustOutcome::connecting(7, "Right"));
  EXPECT_NE(AdjustOutcome::connecting(7, "Left"), AdjustOutcome::connecting(8, "Left"));
  EXPECT_NE(AdjustOutcome::connecting(7, "Left"), AdjustOutcome::handled(7, "Left", 0));
  EXPECT_EQ(AdjustOutcome::passThrough(), AdjustOutcome::passThrough());
  EXPECT_NE(AdjustOutcome::passThrough(), AdjustOutcome::connecting(0, ""));
}

TEST(AdjustOutcome, CarriesWhatItWasMadeOf) {
  const auto handled = AdjustOutcome::handled(7, "Left", -40);
  EXPECT_EQ(handled.kind, AdjustOutcome::Kind::handled);
  EXPECT_EQ(handled.display, 7U);
  EXPECT_EQ(handled.name, "Left");
  EXPECT_EQ(handled.level, -40);
  const auto connecting = AdjustOutcome::connecting(8, "Right");
  EXPECT_EQ(connecting.kind, AdjustOutcome::Kind::connecting);
  EXPECT_EQ(connecting.display, 8U);
  EXPECT_EQ(connecting.name, "Right");
  EXPECT_EQ(AdjustOutcome::passThrough().kind, AdjustOutcome::Kind::passThrough);
}

TEST(BrightnessBackendKind, PrintsAsItsOwnName) {
  EXPECT_EQ(describe(BrightnessBackendKind::appleDisplay), "appleDisplay");
  EXPECT_EQ(describe(BrightnessBackendKind::ddc), "ddc");
  EXPECT_EQ(describe(BrightnessBackendKind::none), "none");
}

TEST(DisplayTarget, SupportsDDCExactlyWhenItHasARange) {
  EXPECT_FALSE((DisplayTarget{1, "A", false, std::nullopt}.supportsDDC()));
  EXPECT_TRUE((DisplayTarget{1, "A", false, PercentRange{0, 100}}.supportsDDC()));
}

TEST(BrightnessScaling, ClampLimitsToZeroAndAHundred) {
  EXPECT_EQ(BrightnessScaling::clamp(smallest), 0);
  EXPECT_EQ(BrightnessScaling::clamp(-1), 0);
  EXPECT_EQ(BrightnessScaling::clamp(0), 0);
  EXPECT_EQ(BrightnessScaling::clamp(37), 37);
  EXPECT_EQ(BrightnessScaling::clamp(100), 100);
  EXPECT_EQ(BrightnessScaling::clamp(101), 100);
  EXPECT_EQ(BrightnessScaling::clamp(largest), 100);
}

struct ScalingCase {
  std::int64_t from;
  std::int64_t max;
  std::int64_t expected;
};

TEST(BrightnessScaling, RawIsTheNearestValueWithHalvesAwayFromZero) {
  const ScalingCase cases[] = {
      {50, 255, 128},  // 127.5
      {150, 80, 80},
      {-3, 80, 0},
      {0, 255, 0},
      {1, 255, 3},  // 2.55
      {100, 255, 255},
      {30, 50, 15},
      {50, 1, 1},  // 0.5
      {49, 1, 0},
      {33, 7000, 2310},
      {29, 50, 14},  // 29 / 100 * 50 is just below 14.5; 29 * 50 / 100 is not
      {50, 0, 0},
      {100, 65535, 65535},
      {50, 65535, 32768},  // 32767.5
      {100, largest, largest},
      {0, largest, 0},
  };
  for (const auto& [percent, max, expected] : cases) {
    EXPECT_EQ(BrightnessScaling::rawFromPercent(percent, max), expected)
        << percent << " of " << max;
  }
}

TEST(BrightnessScaling, PercentIsTheNearestValueLimitedToAHundred) {
  const ScalingCase cases[] = {
      {128, 255, 50},
      {10, 0, 0},
      {10, -1, 0},
      {300, 255, 100},
      {0, 255, 0},
      {-5, 255, 0},
      {1, 200, 1},
      {1, 255, 0},
      {127, 255, 50},
      {3500, 7000, 50},
      {23, 40, 57},  // 23 / 40 * 100 is just below 57.5; 23 *
                     // 100 / 40 is not
      {255, 255, 100},
      {1, 8, 13},  // 12.5
      {largest, 1, 100},
      {smallest, 1, 0},
  };
  for (const auto& [raw, max, expected] : cases) {
    EXPECT_EQ(BrightnessScaling::percentFromRaw(raw, max), expected) << raw << " of " << max;
  }
}

TEST(BrightnessScaling, EveryPercentComesBackFromAMonitorWithAHundredStepsOrMore) {
  for (const std::int64_t max : {100, 101, 200, 255, 500, 7000, 65535}) {
    for (Percent percent = 0; percent <= 100; ++percent) {
      const std::int64_t raw = BrightnessScaling::rawFromPercent(percent, max);
      EXPECT_EQ(BrightnessScaling::percentFromRaw(raw, max), percent) << "of " << max;
    }
  }
}

struct SnapCase {
  Percent from;
  std::int64_t direction;
  Percent step;
  Percent expected;
};

TEST(AdjustDecision, SnapsToTheNextMultipleOfTheStep) {
  const SnapCase cases[] = {
      {37, 1, 5, 40},        {37, -1, 5, 35},       {40, 1, 5, 45},       {40, -1, 5, 35},
      {100, 1, 5, 100},      {0, -1, 5, 0},         {99, 1, 5, 100},      {1, -1, 5, 0},
      {37, 9, 5, 40},        {37, -9, 5, 35},       {120, -1, 5, 100},    {-7, 1, 5, 0},
      {-7, -1, 5, 0},        {50, 1, 30, 60},       {95, 1, 30, 100},     {50, 1, 1, 51},
      {largest, 1, 5, 100},  {largest, -1, 5, 100}, {smallest, -1, 5, 0}, {smallest, 1, 5, 0},
      {50, 1, largest, 100},
  };
  for (const auto& [from, direction, step, expected] : cases) {
    EXPECT_EQ(AdjustDecision::snapped(from, direction, step), expected)
        << from << " by " << direction << " in steps of " << step;
  }
}

TEST(AdjustDecision, LeavesTheLevelAloneWithoutADirectionOrAStep) {
  EXPECT_EQ(AdjustDecision::snapped(37, 0, 5), 37);
  EXPECT_EQ(AdjustDecision::snapped(37, 1, 0), 37);
  EXPECT_EQ(AdjustDecision::snapped(37, 1, -5), 37);
  EXPECT_EQ(AdjustDecision::snapped(-140, 1, 0), -140) << "not even limited";
  EXPECT_EQ(AdjustDecision::snapped(140, 0, 5), 140);
}

}  // namespace
}  // namespace brivane
