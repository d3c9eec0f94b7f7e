#include <gtest/gtest.h>

#include <cmath>

#include "Machines/Desk/GammaTable.h"
#include "Tools/BrivaneDesk/GammaReading.h"
#include "Tools/BrivaneDesk/MappingReading.h"

namespace brivane {
namespace {

using Kind = GammaReading::Kind;

GammaTable calibrated() {
  return calibratedTable({256, GammaDescription::Exponents{1.02, 1, 0.96}});
}

template <typename Change>
GammaTable changed(GammaTable table, const Change& change) {
  for (auto& curve : table) {
    for (float& sample : curve) sample = static_cast<float>(change(static_cast<double>(sample)));
  }
  return table;
}

TEST(GammaReading, TheCalibratedTableIsCalibrated) {
  const auto reading = readGamma(calibrated(), calibrated());
  EXPECT_EQ(reading.kind, Kind::calibrated);
  EXPECT_EQ(reading.text(), "calibrated, peak 1.0000");
}

TEST(GammaReading, EveryDimmingDepthIsToldFromItsNeighbours) {
  for (int depth = 1; depth <= 100; ++depth) {
    const double factor = 1 - depth * 0.0082;
    const auto reading = readGamma(
        changed(calibrated(), [=](double sample) { return sample * factor; }), calibrated());
    EXPECT_EQ(reading.kind, Kind::dimmed);
    EXPECT_EQ(reading.amount, depth);
  }
}

TEST(GammaReading, EveryBoostIsToldFromItsNeighbours) {
  for (int boost = 1; boost <= 100; ++boost) {
    const double power = 1 / (1 + boost * 0.008);
    const auto reading =
        readGamma(changed(calibrated(), [=](double sample) { return std::pow(sample, power); }),
                  calibrated());
    EXPECT_EQ(reading.kind, Kind::boosted);
    EXPECT_EQ(reading.amount, boost);
  }
}

TEST(GammaReading, AGainIsABoostUpToFourfold) {
  const auto gained = [](double gain) {
    return readGamma(changed(calibrated(), [=](double sample) { return sample * gain; }),
                     calibrated());
  };
  EXPECT_EQ(gained(1.3).text(), "boosted, peak 1.3000");
  EXPECT_EQ(gained(4).kind, Kind::boosted);
  EXPECT_EQ(gained(4.1).kind, Kind::other);
  EXPECT_EQ(gained(0.1).kind, Kind::other);
}

TEST(GammaReading, AnyOtherTableIsNoCurveOfBrivanes) {
  const auto inverted = changed(calibrated(), [](double sample) { return 1 - sample; });
  EXPECT_EQ(readGamma(inverted, calibrated()).kind, Kind::other);
  auto oneSampleOff = calibrated();
  oneSampleOff[1][100] += 0.01F;
  EXPECT_EQ(readGamma(oneSampleOff, calibrated()).kind, Kind::other);
  auto noNumber = calibrated();
  noNumber[0][3] = std::nanf("");
  EXPECT_EQ(readGamma(noNumber, calibrated()).kind, Kind::other);
}

TEST(MappingReading, ToldByTheSixBrightnessUsages) {
  const HIDMapping relay = {{0xFF0100000020, 0x70000006E}, {0x00FF00000004, 0x70000006E},
                            {0x000C0000006F, 0x70000006E}, {0xFF0100000021, 0x70000006F},
                            {0x00FF00000005, 0x70000006F}, {0x000C00000070, 0x70000006F}};
  EXPECT_EQ(readMapping({}), "empty");
  EXPECT_EQ(readMapping(relay), "relay");
  EXPECT_EQ(readMapping({{0x700000039, 0x7000000E0}}), "foreign");
  HIDMapping withForeign = relay;
  withForeign.push_back({0x700000039, 0x7000000E0});
  EXPECT_EQ(readMapping(withForeign), "relay");
  for (std::size_t missing = 0; missing < relay.size(); ++missing) {
    HIDMapping partial = relay;
    partial.erase(partial.begin() + static_cast<std::ptrdiff_t>(missing));
    EXPECT_EQ(readMapping(partial), "partial") << missing;
  }
  HIDMapping crossed = relay;
  for (auto& entry : crossed) entry.destination = 0x70000006E;
  EXPECT_EQ(readMapping(crossed), "partial");
}

}  // namespace
}  // namespace brivane
