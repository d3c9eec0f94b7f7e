#include "Machines/Mac/Displays.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>

namespace brivane {

std::optional<std::uint32_t> MacDisplays::onlineDisplayCount() {
  std::uint32_t count = 0;
  if (CGGetOnlineDisplayList(0, nullptr, &count) != kCGErrorSuccess) return std::nullopt;
  return count;
}

std::optional<std::vector<DisplayID>> MacDisplays::onlineDisplayList(std::uint32_t maximum) {
  std::vector<DisplayID> displays(maximum);
  std::uint32_t count = 0;
  if (CGGetOnlineDisplayList(maximum, displays.data(), &count) != kCGErrorSuccess) {
    return std::nullopt;
  }
  displays.resize(std::min(count, maximum));
  return displays;
}

bool MacDisplays::isBuiltIn(DisplayID display) {
  return CGDisplayIsBuiltin(display) != 0;
}

PanelIdentity MacDisplays::panelIdentity(DisplayID display) {
  return {CGDisplayVendorNumber(display), CGDisplayModelNumber(display),
          CGDisplaySerialNumber(display)};
}

}  // namespace brivane
