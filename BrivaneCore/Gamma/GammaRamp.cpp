// Ramps are stored as the displays take them, in 32-bit floats, but computed in double precision:
// each sample is rounded once, so a table written from the same baseline is the same table.

#include "BrivaneCore/Gamma/GammaRamp.h"

#include <algorithm>
#include <cmath>

namespace brivane {
namespace {

using Channel = std::vector<float>;

double fraction(std::int64_t index, std::int64_t count) {
  return static_cast<double>(index) / static_cast<double>(count - 1);
}

Channel scaledChannel(const Channel& channel, double factor) {
  Channel scaled(channel.size());
  std::ranges::transform(channel, scaled.begin(), [factor](float sample) {
    return static_cast<float>(static_cast<double>(sample) * factor);
  });
  return scaled;
}

float interpolated(const Channel& channel, double position) {
  const auto low = static_cast<std::size_t>(std::floor(position));
  const auto high = std::min(channel.size() - 1, low + 1);
  const double below = channel[low];
  const double above = channel[high];
  return static_cast<float>((position - static_cast<double>(low)) * (above - below) + below);
}

Channel resampledChannel(const Channel& channel, std::int64_t target) {
  const auto lastPosition = static_cast<double>(channel.size() - 1);
  Channel resampled;
  resampled.reserve(static_cast<std::size_t>(target));
  for (std::int64_t index = 0; index < target; ++index) {
    resampled.push_back(interpolated(channel, fraction(index, target) * lastPosition));
  }
  return resampled;
}

}  // namespace

GammaRamp GammaRamp::identity(std::int64_t entries) {
  const auto count = std::max<std::int64_t>(entries, 2);
  Channel curve;
  curve.reserve(static_cast<std::size_t>(count));
  for (std::int64_t index = 0; index < count; ++index) {
    curve.push_back(static_cast<float>(fraction(index, count)));
  }
  return {curve, curve, curve};
}

bool GammaRamp::isWellFormed() const {
  return !red.empty() && green.size() == red.size() && blue.size() == red.size();
}

float GammaRamp::peak() const {
  float largest = 0;
  for (const auto* channel : {&red, &green, &blue}) {
    for (const float sample : *channel) largest = std::max(largest, sample);
  }
  return largest;
}

GammaRamp GammaRamp::scaled(double factor) const {
  return {scaledChannel(red, factor), scaledChannel(green, factor), scaledChannel(blue, factor)};
}

std::optional<GammaRamp> GammaRamp::resampled(std::int64_t target) const {
  if (!isWellFormed() || count() < 2 || target < 2) return std::nullopt;
  if (count() == target) return *this;
  return GammaRamp{resampledChannel(red, target), resampledChannel(green, target),
                   resampledChannel(blue, target)};
}

}  // namespace brivane
