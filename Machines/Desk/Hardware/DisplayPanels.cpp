#include "Machines/Desk/Hardware/DisplayPanels.h"

#include <algorithm>
#include <cmath>

namespace brivane {

DisplayPanels::DisplayPanels(const DeskDescription& desk, StateFolder* stateFolder,
                             const AttachedDisplays& attachedDisplays, const Tracer& hardwareTracer)
    : displays(attachedDisplays), tracer(hardwareTracer) {
  for (const auto& display : desk.displays) {
    if (!display.displayServices) continue;
    const auto& services = *display.displayServices;
    panels.try_emplace(display.identifier, PanelState{services.level}, stateFolder,
                       "display-services-" + std::to_string(display.identifier),
                       services.fingerprint);
  }
}

std::optional<float> DisplayPanels::level(DisplayID display) {
  const std::lock_guard lock(mutex);
  const auto found = panels.find(display);
  if (found == panels.end() || !displays.find(display)) return std::nullopt;
  return found->second.read().level;
}

bool DisplayPanels::setLevel(DisplayID display, float level) {
  const auto shown = change(display, [&](float) { return level; });
  tracer.note([&] {
    return "display-services " + std::to_string(display) +
           (shown ? " level " + tracedNumber(*shown) : " refused");
  });
  return shown.has_value();
}

void DisplayPanels::changeSystemBrightness(BrightnessKey key) {
  constexpr float step = 1.0F / 16;
  std::optional<float> shown;
  for (const auto& display : displays.all()) {
    if (!display.isBuiltIn) continue;
    shown = change(display.identifier, [&](float level) {
      return key == BrightnessKey::up ? level + step : level - step;
    });
    if (shown) break;
  }
  tracer.note([&] {
    return std::string("system brightness ") + (key == BrightnessKey::up ? "up" : "down") +
           (shown ? ", level " + tracedNumber(*shown) : ", no panel");
  });
}

/// Returns the panel's new level; nothing when it can't be changed.
std::optional<float> DisplayPanels::change(DisplayID display,
                                           const std::function<float(float level)>& wanted) {
  const auto described = displays.find(display);
  if (!described) return std::nullopt;
  const auto& services = described->displayServices;
  if (!services || !services->canChange) return std::nullopt;
  const std::lock_guard lock(mutex);
  const auto found = panels.find(display);
  if (found == panels.end()) return std::nullopt;
  return found->second.update([&](PanelState& state) -> std::optional<float> {
    const float level = wanted(state.level);
    if (std::isnan(level)) return std::nullopt;
    state.level = std::clamp(level, 0.0F, 1.0F);
    return state.level;
  });
}

}  // namespace brivane
