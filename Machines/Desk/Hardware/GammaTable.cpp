#include "Machines/Desk/Hardware/GammaTable.h"

#include <algorithm>
#include <cmath>

namespace brivane {
namespace {

/// The input of sample `index` of `count`, 0 to 1.
double input(std::size_t index, std::size_t count) {
  return static_cast<double>(index) / static_cast<double>(count - 1);
}

GammaCurve powerCurve(double exponent, std::size_t count) {
  GammaCurve curve;
  for (std::size_t index = 0; index < count; ++index) {
    curve.push_back(static_cast<float>(std::pow(input(index, count), exponent)));
  }
  return curve;
}

GammaCurve resampledCurve(const GammaCurve& curve, std::size_t count) {
  if (curve.size() == count) return curve;
  GammaCurve result;
  for (std::size_t index = 0; index < count; ++index) {
    const double position = input(index, count) * static_cast<double>(curve.size() - 1);
    const auto below = static_cast<std::size_t>(position);
    const auto above = std::min(below + 1, curve.size() - 1);
    const double share = position - static_cast<double>(below);
    result.push_back(static_cast<float>(curve[below] + share * (curve[above] - curve[below])));
  }
  return result;
}

struct TableMaker {
  std::uint32_t capacity;

  GammaTable operator()(GammaDescription::Linear) const {
    const auto curve = powerCurve(1, capacity);
    return {curve, curve, curve};
  }
  GammaTable operator()(const GammaDescription::Exponents& exponents) const {
    return {powerCurve(exponents[0], capacity), powerCurve(exponents[1], capacity),
            powerCurve(exponents[2], capacity)};
  }
  GammaTable operator()(const GammaDescription::Samples& samples) const { return samples; }
};

}  // namespace

GammaTable calibratedTable(const GammaDescription& gamma) {
  return resampled(std::visit(TableMaker{gamma.capacity}, gamma.calibrated), gamma.capacity);
}

GammaTable resampled(const GammaTable& table, std::uint32_t count) {
  return {resampledCurve(table[0], count), resampledCurve(table[1], count),
          resampledCurve(table[2], count)};
}

}  // namespace brivane
