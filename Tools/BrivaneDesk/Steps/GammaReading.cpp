// An independent check of what the program writes: the curves are computed here from their
// documentation, not by the program's code.
#include "Tools/BrivaneDesk/Steps/GammaReading.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>

#include "Machines/Desk/Hardware/GammaTable.h"

namespace brivane {
namespace {

using Curve = std::function<double(double calibrated)>;

/// A tolerance for 32-bit samples, some of them interpolated.
constexpr double equal = 1e-6;

bool follows(const GammaTable& table, const GammaTable& calibrated, double allowed,
             const Curve& curve) {
  for (std::size_t channel = 0; channel < table.size(); ++channel) {
    if (table[channel].size() != calibrated[channel].size()) return false;
    for (std::size_t index = 0; index < table[channel].size(); ++index) {
      const double expected = curve(static_cast<double>(calibrated[channel][index]));
      if (!(std::abs(static_cast<double>(table[channel][index]) - expected) <= allowed)) {
        return false;
      }
    }
  }
  return true;
}

double peakOf(const GammaTable& table) {
  double peak = 0;
  for (const auto& curve : table) {
    for (const float sample : curve) peak = std::max(peak, static_cast<double>(sample));
  }
  return peak;
}

double dimmingFactor(std::int64_t depth) {
  return 1 - static_cast<double>(depth) * 0.0082;
}

double bendingPower(std::int64_t boost) {
  return 1 / (1 + static_cast<double>(boost) * 0.008);
}

/// The table as it reads back after being written with a gain's count of samples: 256, or half the
/// capacity if that is not above 256. Nothing for a table that is too small for a gain.
std::optional<GammaTable> rereadFromFewer(const GammaTable& calibrated) {
  constexpr std::uint32_t usualSamples = 256;
  const auto capacity = static_cast<std::uint32_t>(calibrated[0].size());
  if (capacity < 4) return std::nullopt;
  return resampled(resampled(calibrated, capacity > usualSamples ? usualSamples : capacity / 2),
                   capacity);
}

/// Whether the table is the calibrated one with a gain above 1 and at most 4.
bool isGained(const GammaTable& table, const GammaTable& calibrated) {
  constexpr double largestGain = 4;
  const auto reread = rereadFromFewer(calibrated);
  if (!reread) return false;
  const double gain = peakOf(table) / std::max(peakOf(*reread), 1e-9);
  return gain > 1 && gain <= largestGain + equal &&
         follows(table, *reread, equal * gain, [=](double sample) { return sample * gain; });
}

}  // namespace

GammaReading readGamma(const GammaTable& table, const GammaTable& calibrated) {
  using Kind = GammaReading::Kind;
  const double peak = peakOf(table);
  if (follows(table, calibrated, equal, [](double sample) { return sample; })) {
    return {Kind::calibrated, 0, peak};
  }
  for (std::int64_t amount = 1; amount <= 100; ++amount) {
    const double factor = dimmingFactor(amount);
    if (follows(table, calibrated, equal, [=](double sample) { return sample * factor; })) {
      return {Kind::dimmed, amount, peak};
    }
    const double power = bendingPower(amount);
    if (follows(table, calibrated, equal, [=](double sample) { return std::pow(sample, power); })) {
      return {Kind::boosted, amount, peak};
    }
  }
  return {isGained(table, calibrated) ? Kind::boosted : Kind::other, 0, peak};
}

std::optional<GammaReading> readGamma(DeskHardware& hardware, DisplayID display) {
  const auto table = hardware.gamma.table(display);
  const auto calibrated = hardware.gamma.calibrated(display);
  if (!table || !calibrated) return std::nullopt;
  return readGamma(*table, *calibrated);
}

std::string GammaReading::text() const {
  static constexpr std::array names = {"calibrated", "dimmed", "boosted", "no curve of Brivane's"};
  std::array<char, 64> peakText{};
  std::snprintf(peakText.data(), peakText.size(), ", peak %.4f", peak);
  std::string text = names.at(static_cast<std::size_t>(kind));
  if (amount > 0) text += " by " + std::to_string(amount);
  return text + peakText.data();
}

}  // namespace brivane
