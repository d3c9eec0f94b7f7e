#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "Machines/Linux/X11/Gamma.h"
#include "Machines/Linux/X11/HardwareRamp.h"
#include "Tests/Support/ICCProfileBuilder.h"
#include "Tests/Support/X11Rig.h"

namespace brivane {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

using standardMonitor::left;
using standardMonitor::middle;
using standardMonitor::right;
constexpr std::size_t hardwareSize = 256;

using Curve = std::vector<float>;
using Levels = std::vector<std::uint16_t>;

Levels levels(std::uint16_t factor) {
  Levels all(hardwareSize);
  for (std::size_t index = 0; index < all.size(); ++index) {
    all[index] = static_cast<std::uint16_t>(index * factor);
  }
  return all;
}

/// A profile whose calibration is a table of `factor` times the index, on every channel.
ICCProfileBuilder::Bytes profile(std::uint16_t factor) {
  std::vector<std::uint32_t> entries;
  for (int channel = 0; channel < 3; ++channel) {
    for (const std::uint16_t level : levels(factor)) entries.push_back(level);
  }
  return ICCProfileBuilder()
      .tag("desc", ICCProfileBuilder::Bytes(90, 'd'))
      .tag("vcgt", ICCProfileBuilder::table(3, hardwareSize, 2, entries))
      .bytes();
}

class Gamma : public ::testing::Test {
 protected:
  struct Table {
    Curve red;
    Curve green;
    Curve blue;
    std::uint32_t returned = 0;
    std::int32_t status = -1;
  };

  Table read(DisplayID display, std::size_t count) {
    Table table{Curve(count, -1), Curve(count, -1), Curve(count, -1)};
    table.status = gamma.readTable(display, table.red, table.green, table.blue, table.returned);
    return table;
  }

  std::int32_t write(DisplayID display, const Curve& curve) {
    return gamma.writeTable(display, curve, curve, curve);
  }

  X11Rig rig;
  XConnection connection{rig.display()};
  LinuxGammaTables gamma{connection};
};

TEST_F(Gamma, HasTheCapacityOfTheCRTC) {
  for (const std::size_t monitor : {left, middle, right}) {
    EXPECT_EQ(gamma.capacity(rig.output(monitor)), hardwareSize);
  }
}

TEST_F(Gamma, IsReadAsItIsInForce) {
  rig.setGamma(middle, {levels(257), levels(128), levels(1)});
  const Table table = read(rig.output(middle), hardwareSize);
  EXPECT_EQ(table.status, 0);
  EXPECT_EQ(table.returned, hardwareSize);
  for (std::size_t index = 0; index < hardwareSize; ++index) {
    const auto number = static_cast<float>(index);
    EXPECT_FLOAT_EQ(table.red[index], number * 257 / 65535);
    EXPECT_FLOAT_EQ(table.green[index], number * 128 / 65535);
    EXPECT_FLOAT_EQ(table.blue[index], number / 65535);
  }
  EXPECT_EQ(table.red.back(), 1.0F);
}

TEST_F(Gamma, FillsLongerArraysInPartAndSaysHowFar) {
  rig.setGamma(left, {levels(257), levels(257), levels(257)});
  const Table table = read(rig.output(left), 1000);
  EXPECT_EQ(table.status, 0);
  EXPECT_EQ(table.returned, hardwareSize);
  EXPECT_EQ(table.red[255], 1.0F);
  EXPECT_THAT(std::vector(table.red.begin() + 256, table.red.end()), Each(-1.0F));
}

TEST_F(Gamma, FillsShorterArraysAndNothingBehindThem) {
  rig.setGamma(left, {levels(257), levels(257), levels(257)});
  std::array<float, 4> red{-1, -1, -1, -1};
  std::array<float, 4> others{};
  std::uint32_t returned = 0;
  const auto some = std::span(others).first(3);
  EXPECT_EQ(gamma.readTable(rig.output(left), std::span(red).first(3), some, some, returned), 0);
  EXPECT_EQ(returned, hardwareSize);
  EXPECT_THAT(red, ElementsAre(0.0F, 257.0F / 65535, 514.0F / 65535, -1.0F));
}

TEST_F(Gamma, IsWrittenPerChannelAndToThatDisplayOnly) {
  const X11Rig::Ramps before = rig.gamma(left);
  const auto third = [](float peak) {
    Curve curve(hardwareSize);
    for (std::size_t index = 0; index < curve.size(); ++index) {
      curve[index] = peak * static_cast<float>(index) / 255.0F;
    }
    return curve;
  };
  EXPECT_EQ(gamma.writeTable(rig.output(right), third(1.0F), third(0.5F), third(0.0F)), 0);
  const X11Rig::Ramps after = rig.gamma(right);
  EXPECT_EQ(after[0], levels(257));
  EXPECT_EQ(after[1].back(), 32768);
  EXPECT_THAT(after[2], Each(0));
  EXPECT_EQ(rig.gamma(left), before);
}

TEST_F(Gamma, ThatIsReadAndWrittenBackIsUnchanged) {
  Levels uneven(hardwareSize);
  for (std::size_t index = 0; index < uneven.size(); ++index) {
    uneven[index] =
        static_cast<std::uint16_t>(65535 * std::pow(static_cast<double>(index) / 255, 2.2));
  }
  const X11Rig::Ramps ramps = {uneven, levels(256), levels(201)};
  rig.setGamma(middle, ramps);
  const Table table = read(rig.output(middle), hardwareSize);
  rig.setGamma(middle, {levels(1), levels(1), levels(1)});
  EXPECT_EQ(gamma.writeTable(rig.output(middle), table.red, table.green, table.blue), 0);
  EXPECT_EQ(rig.gamma(middle), ramps);
}

TEST_F(Gamma, TablesOfAnyCountAreInterpolatedToTheHardwaresSize) {
  for (const std::size_t count : {2U, 3U, 255U, 256U, 257U, 1024U, 4096U}) {
    rig.setGamma(left, {levels(0), levels(0), levels(0)});
    Curve line(count);
    for (std::size_t index = 0; index < count; ++index) {
      line[index] = static_cast<float>(static_cast<double>(index) / static_cast<double>(count - 1));
    }
    EXPECT_EQ(write(rig.output(left), line), 0);
    EXPECT_THAT(rig.gamma(left), Each(levels(257))) << count;
  }
}

TEST_F(Gamma, LevelsThatTheHardwareHasNotBecomeTheNearest) {
  EXPECT_EQ(write(rig.output(left), {-1.0F, 1.0F}), 0);
  const Levels ramp = rig.gamma(left)[0];
  EXPECT_EQ(ramp[127], 0);
  EXPECT_EQ(ramp[255], 65535);
  EXPECT_EQ(write(rig.output(left), {0.0F, 1.8F}), 0);
  EXPECT_EQ(rig.gamma(left)[0][142], 65535);
  EXPECT_LT(rig.gamma(left)[0][141], 65535);
}

TEST_F(Gamma, OutlivesTheProgramThatWroteIt) {
  {
    XConnection other(rig.display());
    LinuxGammaTables others(other);
    const Curve half = {0.0F, 0.5F};
    EXPECT_EQ(others.writeTable(rig.output(middle), half, half, half), 0);
  }
  EXPECT_EQ(rig.gamma(middle)[0].back(), 32768);
  EXPECT_FLOAT_EQ(read(rig.output(middle), hardwareSize).red.back(), 32768.0F / 65535);
}

TEST_F(Gamma, OfDisplaysThatAreOffOrUnknownDoesNotExist) {
  rig.turnOff(right);
  for (const DisplayID display : {rig.output(right), DisplayID{0}, DisplayID{1}, DisplayID{~0U}}) {
    EXPECT_EQ(gamma.capacity(display), 0U);
    const Table table = read(display, 4);
    EXPECT_NE(table.status, 0);
    EXPECT_EQ(table.returned, 0U);
    EXPECT_THAT(table.red, Each(-1.0F));
    EXPECT_NE(write(display, {0.0F, 1.0F}), 0);
  }
}

// Calibrated tables

class CalibratedGamma : public Gamma {
 protected:
  /// Restores after all displays have been made dark.
  void restore() {
    const Levels dark = levels(3);
    for (const std::size_t monitor : {left, middle, right})
      rig.setGamma(monitor, {dark, dark, dark});
    gamma.discardForeignTables();
  }
};

TEST_F(CalibratedGamma, IsLinearUpToWhiteWithoutAProfile) {
  restore();
  for (const std::size_t monitor : {left, middle, right}) {
    EXPECT_THAT(rig.gamma(monitor), Each(levels(257)));
  }
}

TEST_F(CalibratedGamma, ComesFromEachOutputsOwnProfile) {
  rig.setOutputProfile(left, profile(250));
  rig.setOutputProfile(middle, profile(240));
  restore();
  EXPECT_THAT(rig.gamma(left), Each(levels(250)));
  EXPECT_THAT(rig.gamma(middle), Each(levels(240)));
  EXPECT_THAT(rig.gamma(right), Each(levels(257)));
}

TEST_F(CalibratedGamma, IsReadAgainEachTime) {
  rig.setOutputProfile(left, profile(250));
  restore();
  rig.setOutputProfile(left, profile(230));
  restore();
  EXPECT_THAT(rig.gamma(left), Each(levels(230)));
  rig.setOutputProfile(left, {});
  restore();
  EXPECT_THAT(rig.gamma(left), Each(levels(257)));
}

TEST_F(CalibratedGamma, ComesFromTheRootWindowForTheFirstMonitorAndByNumberForOthers) {
  rig.setRootProfile("_ICC_PROFILE", profile(251));
  rig.setRootProfile("_ICC_PROFILE_1", profile(252));
  rig.setRootProfile("_ICC_PROFILE_2", profile(253));
  restore();
  EXPECT_THAT(rig.gamma(middle), Each(levels(251)));
  EXPECT_THAT(rig.gamma(left), Each(levels(252)));
  EXPECT_THAT(rig.gamma(right), Each(levels(253)));
}

TEST_F(CalibratedGamma, OnTheRootWindowIsCountedAsTheServerCountsMonitors) {
  rig.move(left, 4000, 0);
  rig.move(right, 0, 500);
  rig.setRootProfile("_ICC_PROFILE_1", profile(252));
  restore();
  EXPECT_THAT(rig.gamma(left), Each(levels(252)));
  EXPECT_THAT(rig.gamma(right), Each(levels(257)));
}

TEST_F(CalibratedGamma, OfAnOutputCountsMoreThanTheRootWindows) {
  rig.setRootProfile("_ICC_PROFILE", profile(251));
  rig.setRootProfile("_ICC_PROFILE_1", profile(252));
  rig.setOutputProfile(middle, profile(240));
  restore();
  EXPECT_THAT(rig.gamma(middle), Each(levels(240)));
  EXPECT_THAT(rig.gamma(left), Each(levels(252)));
}

TEST_F(CalibratedGamma, IsLinearWhenTheProfileHoldsNoCalibration) {
  rig.setRootProfile("_ICC_PROFILE", profile(251));
  rig.setOutputProfile(middle, ICCProfileBuilder().tag("desc", {1, 2, 3}).bytes());
  auto cut = profile(250);
  cut.resize(cut.size() / 2);
  rig.setOutputProfile(left, cut);
  restore();
  EXPECT_THAT(rig.gamma(middle), Each(levels(257)));
  EXPECT_THAT(rig.gamma(left), Each(levels(257)));
}

TEST_F(CalibratedGamma, MayBeAFormulaOrATableOfAnotherSize) {
  const auto formula = ICCProfileBuilder::formula({1, 0, 0.5, 1, 0.5, 1, 1, 0, 1});
  rig.setOutputProfile(left, ICCProfileBuilder().tag("vcgt", formula).bytes());
  const auto table = ICCProfileBuilder::table(1, 2, 1, {0, 255});
  rig.setOutputProfile(right, ICCProfileBuilder().tag("vcgt", table).bytes());
  restore();
  const auto ramps = rig.gamma(left);
  EXPECT_EQ(ramps[0].front(), 0);
  EXPECT_EQ(ramps[0].back(), 32768);
  EXPECT_EQ(ramps[1].front(), 32768);
  EXPECT_EQ(ramps[1].back(), 65535);
  EXPECT_EQ(ramps[2], levels(257));
  EXPECT_THAT(rig.gamma(right), Each(levels(257)));
}

TEST_F(CalibratedGamma, MayComeInALargeProfile) {
  ICCProfileBuilder builder;
  builder.tag("A2B0", ICCProfileBuilder::Bytes(3'000'000, 7));
  builder.tag("vcgt", ICCProfileBuilder::table(1, 2, 2, {0, 32768}));
  const auto large = builder.bytes();
  rig.setOutputProfile(left, large);
  rig.setRootProfile("_ICC_PROFILE", large);
  restore();
  EXPECT_EQ(rig.gamma(left)[0].back(), 32768);
  EXPECT_EQ(rig.gamma(middle)[0].back(), 32768);
}

TEST_F(CalibratedGamma, IsTheLinearTableForADisplayThatIsOff) {
  rig.setOutputProfile(left, profile(250));
  rig.setOutputProfile(middle, profile(240));
  rig.turnOff(middle);
  restore();
  EXPECT_THAT(rig.gamma(left), Each(levels(250)));
  EXPECT_THAT(rig.gamma(right), Each(levels(257)));
  EXPECT_THAT(rig.gamma(middle), Each(levels(257))) << "it may be another display's next";
}

TEST_F(Gamma, OfOtherProgramsStaysInForceUnlessItIsDiscarded) {
  const Levels night = levels(200);
  for (const std::size_t monitor : {left, middle, right}) {
    rig.setGamma(monitor, {night, night, night});
  }
  gamma.restoreCalibratedTables();
  EXPECT_THAT(rig.gamma(left), Each(night));
  EXPECT_EQ(write(rig.output(middle), {0.0F, 0.5F}), 0);
  gamma.restoreCalibratedTables();
  EXPECT_THAT(rig.gamma(left), Each(night));
  EXPECT_THAT(rig.gamma(middle), Each(levels(257)));
  rig.setGamma(middle, {night, night, night});
  gamma.restoreCalibratedTables();
  EXPECT_THAT(rig.gamma(middle), Each(night)) << "put back once";
  gamma.discardForeignTables();
  EXPECT_THAT(rig.gamma(left), Each(levels(257)));
  EXPECT_THAT(rig.gamma(middle), Each(levels(257)));
}

TEST_F(Gamma, OfARunThatWasKilledIsPutBackByTheNext) {
  const Levels night = levels(200);
  rig.setGamma(left, {night, night, night});
  {
    XConnection killed(rig.display());
    const Curve half = {0.0F, 0.5F};
    LinuxGammaTables(killed).writeTable(rig.output(middle), half, half, half);
  }
  gamma.restoreCalibratedTables();
  EXPECT_THAT(rig.gamma(middle), Each(levels(257)));
  EXPECT_THAT(rig.gamma(left), Each(night));
}

TEST_F(Gamma, OfADisplayThatIsOffByThenIsNotLeftDark) {
  EXPECT_EQ(write(rig.output(middle), {0.0F, 0.5F}), 0);
  rig.turnOff(middle);
  gamma.restoreCalibratedTables();
  EXPECT_THAT(rig.gamma(middle), Each(levels(257)));
}

}  // namespace
}  // namespace brivane
