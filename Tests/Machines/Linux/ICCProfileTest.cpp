#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "Machines/Linux/X11/ICCProfile.h"
#include "Tests/Support/ICCProfileBuilder.h"

namespace brivane {
namespace {

using Bytes = ICCProfileBuilder::Bytes;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::FloatEq;

Bytes profileWith(const Bytes& calibration) {
  return ICCProfileBuilder().tag("vcgt", calibration).bytes();
}

Bytes smallTable() {
  return ICCProfileBuilder::table(3, 3, 2, {0, 32768, 65535, 1, 2, 3, 65535, 100, 0});
}

/// The profile's curves, which must be there.
CalibrationCurves read(const Bytes& profile, std::size_t formulaSamples = 256) {
  const auto curves = calibrationCurves(profile, formulaSamples);
  EXPECT_TRUE(curves.has_value());
  return curves.value_or(CalibrationCurves{});
}

TEST(ICCProfile, ATableOfWordsIsReadChannelByChannel) {
  const auto curves = read(profileWith(smallTable()));
  EXPECT_THAT(curves.at(0), ElementsAre(0.0F, FloatEq(32768.0F / 65535.0F), 1.0F));
  EXPECT_THAT(curves.at(1),
              ElementsAre(FloatEq(1.0F / 65535), FloatEq(2.0F / 65535), FloatEq(3.0F / 65535)));
  EXPECT_THAT(curves.at(2), ElementsAre(1.0F, FloatEq(100.0F / 65535), 0.0F));
}

TEST(ICCProfile, ATableOfBytesEndsAtWhiteToo) {
  const auto curves =
      read(profileWith(ICCProfileBuilder::table(3, 2, 1, {0, 255, 51, 102, 1, 254})));
  EXPECT_THAT(curves.at(0), ElementsAre(0.0F, 1.0F));
  EXPECT_THAT(curves.at(1), ElementsAre(FloatEq(0.2F), FloatEq(0.4F)));
}

TEST(ICCProfile, ATableOfOneChannelCountsForAllThree) {
  const auto curves = read(profileWith(ICCProfileBuilder::table(1, 2, 2, {13107, 26214})));
  EXPECT_THAT(curves, Each(ElementsAre(FloatEq(0.2F), FloatEq(0.4F))));
}

TEST(ICCProfile, AFormulaIsWorkedOutForEachChannel) {
  const Bytes formula = ICCProfileBuilder::formula({1, 0, 1, 2, 0, 1, 0.5, 0.25, 0.75});
  const auto curves = read(profileWith(formula), 3);
  EXPECT_THAT(curves.at(0), ElementsAre(0.0F, FloatEq(0.5F), 1.0F));
  EXPECT_THAT(curves.at(1), ElementsAre(0.0F, FloatEq(0.25F), 1.0F));
  const auto middle = static_cast<float>(0.25 + 0.5 * std::sqrt(0.5));
  EXPECT_THAT(curves.at(2), ElementsAre(0.25F, FloatEq(middle), 0.75F));
}

TEST(ICCProfile, TheTagIsFoundBehindOthersAndBytesBehindTheProfileDoNotMatter) {
  Bytes profile = ICCProfileBuilder()
                      .tag("desc", Bytes(91, 'd'))
                      .tag("cprt", Bytes(7, 'c'))
                      .tag("vcgt", smallTable())
                      .bytes();
  profile.resize(profile.size() + 100, 0xEE);
  EXPECT_EQ(read(profile).at(0).size(), 3U);
}

TEST(ICCProfile, AProfileWithoutCalibrationHasNoCurves) {
  EXPECT_FALSE(calibrationCurves(ICCProfileBuilder().bytes(), 256));
  EXPECT_FALSE(calibrationCurves(ICCProfileBuilder().tag("desc", Bytes(50, 1)).bytes(), 256));
}

TEST(ICCProfile, AProfileThatLostItsEndHasNoCurvesWhereverItWasCut) {
  for (const Bytes& whole :
       {profileWith(smallTable()),
        profileWith(ICCProfileBuilder::formula({1, 0, 1, 1, 0, 1, 1, 0, 1}))}) {
    ASSERT_TRUE(calibrationCurves(whole, 256));
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_FALSE(calibrationCurves(std::span(whole).first(size), 256)) << size;
    }
  }
}

struct Spoilt {
  std::string what;
  Bytes profile;
};

/// A profile with some bytes overwritten, big-endian.
Bytes overwritten(Bytes profile, std::size_t offset, std::uint32_t value) {
  Bytes bytes;
  ICCProfileBuilder::put(bytes, value, 4);
  std::copy(bytes.begin(), bytes.end(), profile.begin() + static_cast<std::ptrdiff_t>(offset));
  return profile;
}

class HostileICCProfile : public ::testing::TestWithParam<Spoilt> {};

TEST_P(HostileICCProfile, HasNoCurves) {
  EXPECT_FALSE(calibrationCurves(GetParam().profile, 256)) << GetParam().what;
}

const Bytes& good() {
  static const Bytes profile = profileWith(smallTable());
  return profile;
}

constexpr std::size_t countOffset = 128;
constexpr std::size_t entryOffset = 132;
constexpr std::size_t elementOffset = 144;
constexpr std::uint32_t most = 0xFFFFFFFF;

INSTANTIATE_TEST_SUITE_P(
    Sizes, HostileICCProfile,
    ::testing::Values(
        Spoilt{"a size above the bytes", overwritten(good(), 0, 100000)},
        Spoilt{"the largest size", overwritten(good(), 0, most)},
        Spoilt{"a size below the header", overwritten(good(), 0, 127)},
        Spoilt{"a size that ends in the table", overwritten(good(), 0, 160)},
        Spoilt{"size zero", overwritten(good(), 0, 0)},
        Spoilt{"another signature", overwritten(good(), 36, 0)},
        Spoilt{"no tags", overwritten(good(), countOffset, 0)},
        Spoilt{"an element behind the end", overwritten(good(), entryOffset + 4, 100000)},
        Spoilt{"an element at the largest offset", overwritten(good(), entryOffset + 4, most)},
        Spoilt{"an element longer than the profile", overwritten(good(), entryOffset + 8, most)},
        Spoilt{"an element cut short", overwritten(good(), entryOffset + 8, 20)},
        Spoilt{"an element of size zero", overwritten(good(), entryOffset + 8, 0)},
        Spoilt{"an element of another type",
               overwritten(good(), elementOffset, ICCProfileBuilder::signature("curv"))},
        Spoilt{"an unknown kind", overwritten(good(), elementOffset + 8, 2)},
        Spoilt{"65535 channels", overwritten(good(), elementOffset + 12, 0xFFFF0003)},
        Spoilt{"the most entries", overwritten(good(), elementOffset + 12, 0x0003FFFF)}));

INSTANTIATE_TEST_SUITE_P(
    Tables, HostileICCProfile,
    ::testing::Values(
        Spoilt{"no channels", profileWith(ICCProfileBuilder::table(0, 2, 2, {0, 1}))},
        Spoilt{"two channels", profileWith(ICCProfileBuilder::table(2, 2, 2, {0, 1, 0, 1}))},
        Spoilt{"no entries", profileWith(ICCProfileBuilder::table(3, 0, 2, {}))},
        Spoilt{"one entry", profileWith(ICCProfileBuilder::table(3, 1, 2, {1, 1, 1}))},
        Spoilt{"entries of no size", profileWith(ICCProfileBuilder::table(3, 2, 0, {}))},
        Spoilt{"entries of four bytes", profileWith(ICCProfileBuilder::table(1, 2, 4, {0, 1}))}));

INSTANTIATE_TEST_SUITE_P(
    Formulas, HostileICCProfile,
    ::testing::Values(
        Spoilt{"gamma 0", profileWith(ICCProfileBuilder::formula({0, 0, 1, 1, 0, 1, 1, 0, 1}))},
        Spoilt{"gamma below 0",
               profileWith(ICCProfileBuilder::formula({1, 0, 1, -2, 0, 1, 1, 0, 1}))},
        Spoilt{"minimum below 0",
               profileWith(ICCProfileBuilder::formula({1, 0, 1, 1, -0.5, 1, 1, 0, 1}))},
        Spoilt{"maximum above 1",
               profileWith(ICCProfileBuilder::formula({1, 0, 1, 1, 0, 1, 1, 0, 1.5}))},
        Spoilt{"nothing between minimum and maximum",
               profileWith(ICCProfileBuilder::formula({1, 0.5, 0.5, 1, 0, 1, 1, 0, 1}))},
        Spoilt{"a missing channel", profileWith(ICCProfileBuilder::formula({1, 0, 1, 1, 0, 1}))}));

TEST(ICCProfile, ATagCountAboveTheFileReadsNothingBeyondIt) {
  EXPECT_TRUE(calibrationCurves(overwritten(good(), countOffset, most), 256));
  const Bytes other = ICCProfileBuilder().tag("desc", Bytes(50, 1)).bytes();
  EXPECT_FALSE(calibrationCurves(overwritten(other, countOffset, most), 256));
}

TEST(ICCProfile, RandomDamageNeverGivesCurvesOutsideTheScale) {
  std::mt19937 random(4711);
  for (int round = 0; round < 50000; ++round) {
    Bytes profile = good();
    for (int wounds = 0; wounds < 3; ++wounds) {
      profile[random() % profile.size()] = static_cast<std::uint8_t>(random());
    }
    const auto curves = calibrationCurves(profile, 16);
    for (const auto& curve : curves.value_or(CalibrationCurves{})) {
      EXPECT_EQ(curve.size() >= 2, curves.has_value());
      for (const float sample : curve) EXPECT_TRUE(sample >= 0 && sample <= 1);
    }
  }
}

}  // namespace
}  // namespace brivane
