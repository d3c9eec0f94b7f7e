#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Machines/Linux/X11/HardwareRamp.h"

namespace brivane {
namespace {

using Curve = std::vector<float>;
using Ramp = std::vector<std::uint16_t>;

TEST(HardwareRamp, LinearIsTheIndexTimes257For256Levels) {
  const Ramp ramp = linearRamp(256);
  ASSERT_EQ(ramp.size(), 256U);
  for (std::size_t index = 0; index < 256; ++index) EXPECT_EQ(ramp[index], 257 * index);
}

TEST(HardwareRamp, LinearRoundsToTheNearestLevelForOtherSizes) {
  EXPECT_EQ(linearRamp(3), (Ramp{0, 32768, 65535}));
  EXPECT_EQ(linearRamp(5), (Ramp{0, 16384, 32768, 49151, 65535}));
  constexpr std::size_t steps = 1023;
  const Ramp ramp = linearRamp(steps + 1);
  for (std::size_t index = 0; index <= steps; ++index) {
    EXPECT_EQ(ramp[index], (2 * index * 65535 + steps) / (2 * steps)) << index;
  }
}

TEST(HardwareRamp, EveryLevelSurvivesBeingReadAndWrittenBack) {
  Curve curve(65536);
  for (std::size_t level = 0; level < curve.size(); ++level) {
    curve[level] = static_cast<float>(level) / 65535.0F;
  }
  const Ramp ramp = hardwareRamp(curve, curve.size());
  for (std::size_t level = 0; level < curve.size(); ++level) ASSERT_EQ(ramp[level], level);
}

struct RampCase {
  Curve curve;
  std::size_t size;
  Ramp ramp;
};

class HardwareRampCase : public ::testing::TestWithParam<RampCase> {};

TEST_P(HardwareRampCase, HasTheHardwaresSizeAndLevels) {
  EXPECT_EQ(hardwareRamp(GetParam().curve, GetParam().size), GetParam().ramp);
}

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float none = std::numeric_limits<float>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    Sizes, HardwareRampCase,
    ::testing::Values(RampCase{{0.0F, 0.5F, 1.0F}, 5, {0, 16384, 32768, 49151, 65535}},
                      RampCase{{0.0F, 0.25F, 0.5F, 0.75F, 1.0F}, 3, {0, 32768, 65535}},
                      RampCase{{1.0F, 0.0F}, 3, {65535, 32768, 0}},
                      RampCase{{0.25F}, 3, {16384, 16384, 16384}}, RampCase{{0.0F, 1.0F}, 1, {0}},
                      RampCase{{0.0F, 1.0F}, 0, {}}));

INSTANTIATE_TEST_SUITE_P(OutsideTheScale, HardwareRampCase,
                         ::testing::Values(RampCase{{-0.5F, 1.5F}, 2, {0, 65535}},
                                           RampCase{{0.0F, 2.0F}, 3, {0, 65535, 65535}},
                                           RampCase{{-1.0F, 1.0F}, 3, {0, 0, 65535}},
                                           RampCase{{-infinite, infinite}, 2, {0, 65535}},
                                           RampCase{
                                               {0.5F, infinite, 0.5F}, 3, {32768, 65535, 32768}},
                                           RampCase{{none, 1.0F}, 2, {0, 65535}}));

}  // namespace
}  // namespace brivane
