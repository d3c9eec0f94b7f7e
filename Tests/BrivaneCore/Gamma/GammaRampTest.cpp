#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "BrivaneCore/Gamma/GammaRamp.h"

namespace brivane {
namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

GammaRamp grey(const std::vector<float>& curve) {
  return {curve, curve, curve};
}

TEST(GammaRamp, IdentityHasAtLeastTwoSamples) {
  for (const std::int64_t entries : {-3, 0, 1, 2}) {
    EXPECT_EQ(GammaRamp::identity(entries), grey({0, 1})) << entries;
  }
}

TEST(GammaRamp, IdentityOf256RisesFromBlackToWhiteInEvenSteps) {
  const auto ramp = GammaRamp::identity(256);
  ASSERT_EQ(ramp.count(), 256);
  for (int index = 0; index < 256; ++index) {
    EXPECT_EQ(ramp.red[static_cast<std::size_t>(index)], static_cast<float>(index / 255.0));
  }
  EXPECT_EQ(ramp.green, ramp.red);
  EXPECT_EQ(ramp.blue, ramp.red);
}

TEST(GammaRamp, ScalingDoesNotStopAtWhite) {
  const auto ramp = GammaRamp::identity(3).scaled(1.8);
  EXPECT_EQ(ramp.red.back(), 1.8F);
  EXPECT_EQ(ramp.peak(), 1.8F);
  EXPECT_TRUE(ramp.containsValuesAboveWhite());
}

TEST(GammaRamp, ScaledSamplesAreProductsInDoublePrecisionRoundedOnce) {
  const auto ramp = GammaRamp{{0.1F}, {0.5F}, {0.25F}}.scaled(1.8);
  EXPECT_EQ(ramp.red.front(), 0x1.70a3d8p-3F);
  ASSERT_NE(ramp.red.front(), 0.1F * 1.8F);
  EXPECT_EQ(ramp.green.front(), 0.9F);
  EXPECT_EQ(ramp.blue.front(), 0.45F);
}

TEST(GammaRamp, EmptyChannelsStayEmptyWhenScaled) {
  EXPECT_EQ((GammaRamp{{0.5F}, {}, {}}.scaled(2)), (GammaRamp{{1}, {}, {}}));
}

TEST(GammaRamp, IsWellFormedWhenAllChannelsHaveTheSameNonZeroCount) {
  EXPECT_TRUE((GammaRamp{{0}, {0}, {0}}.isWellFormed()));
  EXPECT_FALSE((GammaRamp{}.isWellFormed()));
  EXPECT_FALSE((GammaRamp{{}, {0}, {0}}.isWellFormed()));
  EXPECT_FALSE((GammaRamp{{0, 1}, {0}, {0, 1}}.isWellFormed()));
  EXPECT_FALSE((GammaRamp{{0, 1}, {0, 1}, {0, 1, 1}}.isWellFormed()));
}

TEST(GammaRamp, PeakIsTheLargestSampleOfAnyChannelThatHasSamples) {
  EXPECT_EQ((GammaRamp{{0, 0.5F}, {0.7F, 0}, {0.1F, 0.2F}}.peak()), 0.7F);
  EXPECT_EQ((GammaRamp{{}, {0.3F}, {}}.peak()), 0.3F);
  EXPECT_EQ((GammaRamp{{}, {}, {0.4F, 0.2F}}.peak()), 0.4F);
  EXPECT_EQ((GammaRamp{{notANumber, 0.3F}, {0.2F, notANumber}, {}}.peak()), 0.3F);
}

TEST(GammaRamp, PeakIsZeroWithoutASampleAboveZero) {
  EXPECT_EQ((GammaRamp{}.peak()), 0);
  EXPECT_EQ((GammaRamp{{-0.5F}, {-1}, {0}}.peak()), 0);
  EXPECT_EQ((GammaRamp{{notANumber}, {}, {}}.peak()), 0);
}

TEST(GammaRamp, WhiteItselfIsNotAboveWhite) {
  EXPECT_FALSE(grey({0, 1}).containsValuesAboveWhite());
  EXPECT_TRUE(
      (GammaRamp{{0, 1}, {0, 1}, {0, std::nextafter(1.0F, 2.0F)}}.containsValuesAboveWhite()));
}

TEST(GammaRamp, ResamplingInterpolatesLinearly) {
  EXPECT_EQ(grey({0, 0.5F, 1}).resampled(5), grey({0, 0.25F, 0.5F, 0.75F, 1}));
  EXPECT_EQ(grey({0, 0.25F, 0.5F, 0.75F, 1}).resampled(3), grey({0, 0.5F, 1}));
  EXPECT_EQ(grey({1, 0}).resampled(5), grey({1, 0.75F, 0.5F, 0.25F, 0}));
}

TEST(GammaRamp, ResamplingTreatsChannelsIndependently) {
  const auto resampled = GammaRamp{{0, 1}, {0, 0.5F}, {0.25F, 0.25F}}.resampled(3);
  EXPECT_EQ(resampled, (GammaRamp{{0, 0.5F, 1}, {0, 0.25F, 0.5F}, {0.25F, 0.25F, 0.25F}}));
}

TEST(GammaRamp, ResamplingKeepsTheFirstAndTheLastSample) {
  for (const std::int64_t target : {2, 3, 4, 7, 100, 255, 256}) {
    const auto resampled =
        grey({0.01F, 0.3F, 0.2F, 0.9F, 0.97F}).resampled(target).value_or(GammaRamp::identity(2));
    EXPECT_EQ(resampled.count(), target);
    EXPECT_EQ(resampled.red.front(), 0.01F);
    EXPECT_EQ(resampled.red.back(), 0.97F);
  }
}

// 30 / 44 * 22 is one unit in the last place below 15, where 30 * 22 / 44 would be 15.
TEST(GammaRamp, ResamplingDividesBeforeItMultiplies) {
  std::vector<float> curve(23, 0.0F);
  curve[14] = 0x1p127F;
  const auto resampled = grey(curve).resampled(45).value_or(GammaRamp::identity(45));
  EXPECT_EQ(resampled.red.at(30), 0x1p78F);
}

TEST(GammaRamp, ResamplingToTheSameCountChangesNothing) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  for (const auto& ramp : {grey({0, 0.7F, 1}), grey({0, infinity, 1})}) {
    EXPECT_EQ(ramp.resampled(3), ramp);
  }
}

TEST(GammaRamp, OneSampleCannotBeResampledNorATargetBelowTwoBeReached) {
  EXPECT_EQ(grey({0.5F}).resampled(4), std::nullopt);
  EXPECT_EQ(grey({0.5F}).resampled(1), std::nullopt);
  for (const std::int64_t target : {1, 0, -5}) {
    EXPECT_EQ(grey({0, 0.5F, 1}).resampled(target), std::nullopt) << target;
  }
}

TEST(GammaRamp, AMalformedRampCannotBeResampled) {
  EXPECT_EQ((GammaRamp{{0, 1}, {0}, {0, 1}}.resampled(4)), std::nullopt);
  EXPECT_EQ((GammaRamp{{0, 1}, {0, 1}, {0}}.resampled(2)), std::nullopt);
}

}  // namespace
}  // namespace brivane
