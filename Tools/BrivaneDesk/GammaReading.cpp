// An independent second opinion on what the program writes: the curves are built here from what is
// documented about them, not by the program's own code, and compared with a tolerance that covers
// tables of fewer samples than the display's.
#include "Tools/BrivaneDesk/GammaReading.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>

#include "Machines/Desk/GammaTable.h"

namespace brivane {
namespace {

using Curve = std::function<double(double calibrated)>;

/// Interpolation between the samples of a smaller table bends a curve by up to this much.
constexpr double tolerance = 0.004;

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

}  // namespace

GammaReading readGamma(const GammaTable& table, const GammaTable& calibrated) {
  using Kind = GammaReading::Kind;
  const double peak = peakOf(table);
  constexpr double equal = 1e-6;
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
  const double gain = peak / std::max(peakOf(calibrated), 1e-9);
  if (gain >= 1 && gain <= 4 &&
      follows(table, calibrated, tolerance * gain, [=](double sample) { return sample * gain; })) {
    return {Kind::boosted, 0, peak};
  }
  return {Kind::other, 0, peak};
}

std::optional<GammaReading> readGamma(DeskHardware& hardware, DisplayID display) {
  const auto described = hardware.display(display);
  const auto table = hardware.gammaTable(display);
  if (!described || !described->gamma || !table) return std::nullopt;
  return readGamma(*table, resampled(calibratedTable(*described->gamma),
                                     static_cast<std::uint32_t>((*table)[0].size())));
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
