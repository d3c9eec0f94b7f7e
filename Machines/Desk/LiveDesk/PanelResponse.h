#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/LiveDesk/TestPicture.h"

namespace brivane {

/// What lights a panel.
struct PanelLight {
  /// The light of white, as a part of what the panel can give: 0 (off) to 1.
  double backlight = 1;
  /// How much brighter than white it can be; 1 or more.
  double headroom = 1;

  bool operator==(const PanelLight&) const = default;
};

/// Of a display that is plugged in; nothing for others. Even at its lowest level a panel gives some
/// light, an external monitor more than a built-in one; asleep it gives none.
std::optional<PanelLight> panelLight(DeskHardware& hardware, DisplayID display);

/// What a panel makes of signals, as light and as seen in a window on another display. Signals
/// are cut off at the headroom and go through the gamma table, which continues in a straight line
/// beyond white. The panel turns what comes out into light: by the exponent 2.2 up to white, in
/// proportion above, and cuts off what it can't show.
class PanelResponse {
 public:
  PanelResponse(const PanelLight& panelLight, const GammaTable& gammaTable);

  /// The light of a channel (0 red, 1 green, 2 blue) for a signal of 0 to `brightest`: 1 is white
  /// at full backlight.
  double light(std::size_t channel, std::uint16_t signal) const;

  /// The same as sRGB, 0 to 255. White at full backlight leaves room for highlights: it is 203.
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
