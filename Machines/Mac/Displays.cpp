#include "Machines/Mac/Displays.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>

namespace brivane {
namespace {

/// What the system answers to all three questions where there is no monitor to ask. A serial number
/// alone may be this one.
constexpr std::uint32_t noNumber = 0xFFFFFFFF;
constexpr PanelIdentity noMonitor = {noNumber, noNumber, noNumber};

}  // namespace

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
  const PanelIdentity identity = {CGDisplayVendorNumber(display), CGDisplayModelNumber(display),
                                  CGDisplaySerialNumber(display)};
  return identity == noMonitor ? PanelIdentity{} : identity;
}

}  // namespace brivane
