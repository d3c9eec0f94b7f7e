#include "Machines/Desk/LiveDesk/TestPicture.h"

#include <algorithm>
#include <cmath>

// Computed from relative coordinates, 0 to 1 from the left and from the top, so any size works.

namespace brivane {
namespace {

/// 1 is white.
using Signals = std::array<double, 3>;

constexpr double landscapeEnd = 0.62;
constexpr double stepsEnd = 0.78;
constexpr double barsEnd = 0.9;
constexpr double aspect = 16.0 / 9;

Signals mixed(const Signals& one, const Signals& other, double share) {
  Signals result{};
  for (std::size_t i = 0; i < 3; ++i) result.at(i) = one.at(i) + (other.at(i) - one.at(i)) * share;
  return result;
}

/// `y` is 0 at the top of the landscape and 1 at its lower edge, here and below.
Signals sky(double x, double y) {
  constexpr Signals zenith = {0.16, 0.33, 0.62};
  constexpr Signals horizon = {0.96, 0.72, 0.5};
  constexpr Signals sun = {4, 3.6, 2.9};
  constexpr Signals halo = {1.3, 1.15, 0.95};
  constexpr double sunRadius = 0.07;
  const double fromSun = std::hypot((x - 0.72) * aspect, (y - 0.34) * landscapeEnd);
  const Signals air = mixed(zenith, horizon, std::clamp(y * 1.2, 0.0, 1.0));
  if (fromSun < sunRadius) return sun;
  return mixed(air, halo, 0.85 * std::exp(-(fromSun - sunRadius) * 11));
}

Signals landscape(double x, double y) {
  constexpr Signals farHills = {0.42, 0.42, 0.52};
  constexpr Signals nearHills = {0.12, 0.22, 0.13};
  constexpr Signals shadow = {0.02, 0.04, 0.03};
  const double farRidge = 0.62 + 0.06 * std::sin(x * 9) + 0.03 * std::sin(x * 23 + 1);
  const double nearRidge = 0.78 - 0.08 * std::sin(x * 5 + 0.6) + 0.02 * std::sin(x * 31);
  if (y > nearRidge) return mixed(nearHills, shadow, std::min((y - nearRidge) / 0.25, 1.0));
  return y > farRidge ? farHills : sky(x, y);
}

Signals grey(double signal) {
  return {signal, signal, signal};
}

/// Eleven steps from 0 to 1, then highlights.
Signals steps(double x) {
  constexpr std::array<double, 15> signals = {0,   0.1, 0.2, 0.3,  0.4, 0.5, 0.6, 0.7,
                                              0.8, 0.9, 1,   1.25, 2,   3,   4};
  const auto step = static_cast<std::size_t>(x * static_cast<double>(signals.size()));
  return grey(signals.at(std::min(step, signals.size() - 1)));
}

Signals bars(double x) {
  constexpr std::array<Signals, 6> colors = {
      {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}}};
  const auto bar = static_cast<std::size_t>(x * static_cast<double>(colors.size()));
  return colors.at(std::min(bar, colors.size() - 1));
}

Signals nearBlacks(double x) {
  return grey(0.2 * x);
}

Signals signalsAt(double x, double y) {
  if (y < landscapeEnd) return landscape(x, y / landscapeEnd);
  if (y < stepsEnd) return steps(x);
  return y < barsEnd ? bars(x) : nearBlacks(x);
}

SignalPicture::Pixel asPixel(const Signals& signals) {
  SignalPicture::Pixel pixel{};
  std::ranges::transform(signals, pixel.begin(), [](double signal) {
    const double scaled = std::round(signal * SignalPicture::white);
    return static_cast<std::uint16_t>(std::clamp(scaled, 0.0, double{SignalPicture::brightest}));
  });
  return pixel;
}

}  // namespace

SignalPicture testPicture(std::uint32_t width, std::uint32_t height) {
  SignalPicture picture{width, height, {}};
  picture.pixels.reserve(std::size_t{width} * height);
  for (std::uint32_t row = 0; row < height; ++row) {
    for (std::uint32_t column = 0; column < width; ++column) {
      picture.pixels.push_back(asPixel(signalsAt((column + 0.5) / width, (row + 0.5) / height)));
    }
  }
  return picture;
}

}  // namespace brivane
