#include "Machines/Desk/Machine/Displays.h"

#include <algorithm>

namespace brivane {

std::optional<std::uint32_t> DeskDisplays::onlineDisplayCount() {
  if (faults.strikes("DisplaySystem.onlineDisplayCount")) return std::nullopt;
  return static_cast<std::uint32_t>(displays.all().size());
}

std::optional<std::vector<DisplayID>> DeskDisplays::onlineDisplayList(std::uint32_t maximum) {
  if (faults.strikes("DisplaySystem.onlineDisplayList")) return std::nullopt;
  const auto all = displays.all();
  std::vector<DisplayID> list;
  for (const auto& display : all) {
    if (list.size() < maximum) list.push_back(display.number);
  }
  return list;
}

bool DeskDisplays::isBuiltIn(DisplayID display) {
  if (faults.strikes("DisplaySystem.isBuiltIn")) return false;
  const auto described = displays.findNumbered(display);
  return described && described->isBuiltIn;
}

PanelIdentity DeskDisplays::panelIdentity(DisplayID display) {
  if (faults.strikes("DisplaySystem.panelIdentity")) return {};
  const auto described = displays.findNumbered(display);
  if (!described) return {};
  return {described->vendor, described->model, described->serial};
}

std::vector<Screen> DeskDisplays::screens() {
  return faults.strikes("DisplaySystem.screens") ? std::vector<Screen>() : allScreens();
}

std::vector<Screen> DeskDisplays::allScreens() const {
  const auto all = displays.all();
  std::vector<Screen> list;
  for (const auto& display : all) {
    if (display.screen == ScreenPresence::none) continue;
    Screen screen{std::nullopt, display.frame, display.name, display.headroom};
    if (display.screen == ScreenPresence::numbered) screen.number = display.number;
    list.push_back(screen);
  }
  return list;
}

std::optional<Screen> DeskDisplays::mainScreen() {
  if (faults.strikes("DisplaySystem.mainScreen")) return std::nullopt;
  const auto all = allScreens();
  return all.empty() ? std::nullopt : std::optional(all.front());
}

Point DeskDisplays::pointerPosition() {
  constexpr double beyondEveryScreen = -1e9;
  if (faults.strikes("DisplaySystem.pointerPosition")) {
    return {beyondEveryScreen, beyondEveryScreen};
  }
  return system.pointer();
}

}  // namespace brivane
