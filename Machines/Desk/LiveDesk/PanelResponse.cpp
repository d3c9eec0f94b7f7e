// A window can't be brighter than the real display. So white at full backlight is shown at 60 % of
// the real display's light, brighter light approaches 100 %, and darker light keeps its
// proportions.
#include "Machines/Desk/LiveDesk/PanelResponse.h"

#include <algorithm>
#include <cmath>

namespace brivane {
namespace {

constexpr double panelExponent = 2.2;
constexpr double shownWhite = 0.6;
// Typical panels, as fractions of their full light: monitors seldom go below a tenth.
constexpr double darkestMonitor = 0.1;
constexpr double darkestBuiltIn = 0.01;

double compressed(double light) {
  if (light <= 1) return shownWhite * light;
  // Continuous, with the same slope at 1.
  constexpr double rest = 1 - shownWhite;
  return 1 - rest / (1 + (light - 1) * shownWhite / rest);
}

/// The sRGB encoding of linear light, 0 to 1.
double encoded(double light) {
  constexpr double straightBelow = 0.0031308;
  if (light <= straightBelow) return 12.92 * light;
  return 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

double withFloor(double darkest, double share) {
  return darkest + (1 - darkest) * std::clamp(share, 0.0, 1.0);
}

}  // namespace

std::optional<PanelLight> panelLight(DeskHardware& hardware, DisplayID display) {
  const auto described = hardware.displays.find(display);
  if (!described) return std::nullopt;
  PanelLight light{1, std::max(described->headroom, 1.0)};
  const auto monitor = hardware.monitors.state(display);
  const auto& firmware = described->firmware;
  if (hardware.system.isAsleep() || (monitor && monitor->isAsleep)) {
    light.backlight = 0;
  } else if (const auto level = hardware.panels.level(display)) {
    light.backlight = withFloor(darkestBuiltIn, double{*level});
  } else if (monitor && firmware) {
    light.backlight = withFloor(darkestMonitor, monitor->shownLevel * 1.0 / firmware->maximum);
  }
  return light;
}

PanelResponse::PanelResponse(const PanelLight& panelLight, const GammaTable& gammaTable)
    : panel(panelLight), table(gammaTable) {
  for (std::size_t channel = 0; channel < 3; ++channel) {
    for (std::uint16_t signal = 0; signal <= SignalPicture::brightest; ++signal) {
      const double value = encoded(compressed(light(channel, signal)));
      shownSignals.at(channel).at(signal) = static_cast<std::uint8_t>(std::lround(255 * value));
    }
  }
}

double PanelResponse::light(std::size_t channel, std::uint16_t signal) const {
  const double white = SignalPicture::white;
  const double drawn = std::min(signal / white, panel.headroom);
  const double output = std::max(tableOutput(channel, drawn), 0.0);
  const double wanted = output < 1 ? std::pow(output, panelExponent) : output;
  return panel.backlight * std::min(wanted, panel.headroom);
}

double PanelResponse::tableOutput(std::size_t channel, double signal) const {
  const auto& curve = table.at(channel);
  if (curve.empty()) return signal;
  if (signal >= 1 || curve.size() == 1) return signal * double{curve.back()};
  const double position = signal * static_cast<double>(curve.size() - 1);
  const auto below = static_cast<std::size_t>(position);
  const double share = position - static_cast<double>(below);
  return double{curve.at(below)} * (1 - share) + double{curve.at(below + 1)} * share;
}

std::vector<std::uint32_t> PanelResponse::shown(const SignalPicture& picture) const {
  std::vector<std::uint32_t> pixels;
  pixels.reserve(picture.pixels.size());
  const auto& [reds, greens, blues] = shownSignals;
  for (const auto& [red, green, blue] : picture.pixels) {
    pixels.push_back(0xFF000000U | std::uint32_t{reds.at(red)} << 16U |
                     std::uint32_t{greens.at(green)} << 8U | std::uint32_t{blues.at(blue)});
  }
  return pixels;
}

}  // namespace brivane
