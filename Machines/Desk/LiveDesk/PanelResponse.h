#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/LiveDesk/TestPicture.h"

namespace brivane {

/// A panel's backlight.
struct PanelLight {
  /// The light of white, as a fraction of the panel's maximum: 0 (off) to 1.
  double backlight = 1;
  /// How much brighter than white the panel can be; 1 or more.
  double headroom = 1;

  bool operator==(const PanelLight&) const = default;
};

/// Nothing for displays that are not plugged in. At the lowest level a panel still gives some
/// light, an external monitor more than a built-in one; asleep it gives none.
std::optional<PanelLight> panelLight(DeskHardware& hardware, DisplayID display);

/// Converts signals to a panel's light, and to sRGB for a window on another display. Signals are
/// clipped at the headroom and go through the gamma table, which is extended linearly beyond white.
/// The panel turns the table's output into light, by the exponent 2.2 up to white, linearly above,
/// and clips at its maximum.
class PanelResponse {
 public:
  PanelResponse(const PanelLight& panelLight, const GammaTable& gammaTable);

  /// The light of a channel (0 red, 1 green, 2 blue) for a signal of 0 to `brightest`: 1 is white
  /// at full backlight.
  double light(std::size_t channel, std::uint16_t signal) const;

  /// The same as sRGB, 0 to 255. White at full backlight is 203, which leaves room for highlights.
  std::uint8_t shown(std::size_t channel, std::uint16_t signal) const {
    return shownSignals.at(channel)[signal];
  }

  /// The whole picture: 0xFFRRGGBB for each pixel.
  std::vector<std::uint32_t> shown(const SignalPicture& picture) const;

 private:
  double tableOutput(std::size_t channel, double signal) const;

  const PanelLight panel;
  const GammaTable table;
  std::array<std::array<std::uint8_t, SignalPicture::brightest + 1>, 3> shownSignals{};
};

}  // namespace brivane
