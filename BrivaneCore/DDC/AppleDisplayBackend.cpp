// Display services are a private interface that a machine may not have, in whole or in part: each
// entry point is looked up by name and may stay empty. An entry point can also answer "success"
// without having stored a level, which is why the level starts out as an impossible one.

#include "BrivaneCore/DDC/AppleDisplayBackend.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace brivane {
namespace {

constexpr std::string_view displayServicesPath =
    "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices";

/// The vendor number of Apple's own panels.
constexpr std::uint32_t appleVendor = 0x0610;

}  // namespace

AppleDisplayBackend::AppleDisplayBackend(SymbolLoader& loader, DisplaySystem& displaySystem)
    : symbols(loader), displays(displaySystem) {}

bool AppleDisplayBackend::isAvailable() const {
  return entryPoints().get != nullptr && entryPoints().set != nullptr;
}

std::optional<Percent> AppleDisplayBackend::read(DisplayID display) const {
  const auto& get = entryPoints().get;
  if (!get) return std::nullopt;
  float level = -1.0F;
  if (get(display, level) != 0) return std::nullopt;
  if (!std::isfinite(level) || level < 0) return std::nullopt;
  return BrightnessScaling::clamp(static_cast<Percent>(std::round(std::min(level, 1.0F) * 100.0F)));
}

bool AppleDisplayBackend::write(Percent percent, DisplayID display) const {
  const auto& set = entryPoints().set;
  if (!set) return false;
  return set(display, static_cast<float>(BrightnessScaling::clamp(percent)) / 100.0F) == 0;
}

bool AppleDisplayBackend::canControl(DisplayID display) const {
  if (!isAvailable()) return false;
  const auto& canChange = entryPoints().canChange;
  if (canChange && canChange(display)) return true;
  // Some of Apple's panels are not announced as changeable and yet answer.
  const bool mayBeDriven =
      displays.isBuiltIn(display) || displays.panelIdentity(display).vendor == appleVendor;
  return mayBeDriven && read(display).has_value();
}

const AppleDisplayBackend::EntryPoints& AppleDisplayBackend::entryPoints() const {
  return found.get([this]() -> EntryPoints {
    const LibraryHandle library = symbols.open(displayServicesPath, lazyBinding);
    if (library == 0) return {};
    const auto find = [&](const char* name) { return symbols.find(library, name); };
    return {functionIn<GetBrightnessFunction>(find("DisplayServicesGetBrightness")),
            functionIn<SetBrightnessFunction>(find("DisplayServicesSetBrightness")),
            functionIn<CanChangeBrightnessFunction>(find("DisplayServicesCanChangeBrightness"))};
  });
}

}  // namespace brivane
