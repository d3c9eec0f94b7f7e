#include <gtest/gtest.h>

#include <cmath>

#include "BrivaneCore/Gamma/GammaRamp.h"
#include "Machines/Desk/Hardware/GammaTable.h"
#include "Tools/BrivaneDesk/Steps/GammaReading.h"
#include "Tools/BrivaneDesk/Steps/MappingReading.h"

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

/// What a display shows whose table was written with fewer samples than it has, times a gain.
GammaTable gained(const GammaTable& table, double gain, std::int64_t samples) {
  const auto ramp = GammaRamp{table[0], table[1], table[2]}.resampled(samples)->scaled(gain);
  return resampled({ramp.red, ramp.green, ramp.blue}, static_cast<std::uint32_t>(table[0].size()));
}

TEST(GammaReading, AGainIsABoostUpToFourfold) {
  const auto read = [](double gain) {
    return readGamma(gained(calibrated(), gain, 128), calibrated());
  };
  EXPECT_EQ(read(1.3).text(), "boosted, peak 1.3000");
  EXPECT_EQ(read(4).kind, Kind::boosted);
  EXPECT_EQ(read(4.1).kind, Kind::other);
  EXPECT_EQ(read(0.1).kind, Kind::other);
}

/// Curves with a knee, which few samples can't follow.
GammaTable withKnee(std::uint32_t capacity) {
  const GammaDescription::Samples samples = {
      GammaCurve{0, 0.05F, 0.6F, 0.7F, 1}, {0, 0.1F, 0.7F, 0.8F, 0.9F}, {0, 0.1F, 0.2F, 0.9F, 1}};
  return calibratedTable({capacity, samples});
}

TEST(GammaReading, AGainOverACurveWithAKneeIsABoostWhateverTheTablesSize) {
  struct Case {
    std::uint32_t capacity;
    std::int64_t written;
  };
  for (const auto& [capacity, written] :
       {Case{4, 2}, Case{5, 2}, Case{64, 32}, Case{256, 128}, Case{257, 256}, Case{1024, 256}}) {
    const auto table = withKnee(capacity);
    for (const double gain : {1.03, 2.5, 4.0}) {
      EXPECT_EQ(readGamma(gained(table, gain, written), table).kind, Kind::boosted)
          << capacity << " samples, gain " << gain;
    }
    EXPECT_EQ(readGamma(gained(table, 2, written + 1), table).kind, Kind::other) << capacity;
  }
  EXPECT_EQ(readGamma(gained(withKnee(3), 2, 2), withKnee(3)).kind, Kind::other);
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

TEST(MappingReading, DependsOnTheSixBrightnessUsages) {
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
