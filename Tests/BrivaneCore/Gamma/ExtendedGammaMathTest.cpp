#include <gtest/gtest.h>

#include <limits>
#include <map>

#include "BrivaneCore/Gamma/ExtendedGammaMath.h"

namespace brivane {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(ExtendedGammaMath, WritesThePreferredCountToLargerTablesAndHalfToOthers) {
  const std::map<std::int64_t, std::optional<std::int64_t>> counts = {
      {1024, 256},
      {257, 256},
      {256, 128},
      {200, 100},
      {5, 2},
      {4, 2},
      {3, std::nullopt},
      {2, std::nullopt},
      {1, std::nullopt},
      {0, std::nullopt},
      {-7, std::nullopt},
  };
  for (const auto& [capacity, expected] : counts) {
    EXPECT_EQ(ExtendedGammaMath{}.entryCount(capacity), expected) << capacity;
  }
}

TEST(ExtendedGammaMath, APreferredCountBelowTwoIsNotUsed) {
  for (const std::int64_t preferred : {1, 0, -4}) {
    EXPECT_EQ((ExtendedGammaMath{{4.0, preferred}}.entryCount(1024)), 512) << preferred;
  }
  EXPECT_EQ((ExtendedGammaMath{{4.0, 2}}.entryCount(3)), 2);
}

TEST(ExtendedGammaMath, TheCeilingIsTheHeadroomBetweenOneAndTheMaximumGain) {
  const std::map<double, double> ceilings = {{-1, 1}, {0, 1},     {1, 1},  {1.5, 1.5},
                                             {4, 4},  {4.001, 4}, {16, 4}, {infinity, 4}};
  for (const auto& [headroom, expected] : ceilings) {
    EXPECT_EQ(ExtendedGammaMath{}.ceiling(headroom), expected) << headroom;
  }
}

TEST(ExtendedGammaMath, TheGainRisesEvenlyFromOneToTheCeiling) {
  const ExtendedGammaMath math;
  EXPECT_EQ(math.gain(0, 2.0), 1.0);
  EXPECT_EQ(math.gain(50, 2.0), 1.5);
  EXPECT_EQ(math.gain(100, 2.0), 2.0);
  EXPECT_EQ(math.gain(100, math.ceiling(16)), 4.0);
  EXPECT_DOUBLE_EQ(math.gain(40, 2.5), 1.6);
}

TEST(ExtendedGammaMath, TheGainLimitsAmountAndCeiling) {
  const ExtendedGammaMath math;
  EXPECT_EQ(math.gain(-10, 2.0), 1.0);
  EXPECT_EQ(math.gain(1000, 2.0), 2.0);
  EXPECT_EQ(math.gain(100, 0.5), 1.0);
}

}  // namespace
}  // namespace brivane
