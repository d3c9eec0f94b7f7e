#include "Machines/Desk/Displays.h"

#include <algorithm>

namespace brivane {

std::optional<std::uint32_t> DeskDisplays::onlineDisplayCount() {
  if (faults.strikes("DisplaySystem.onlineDisplayCount")) return std::nullopt;
  return static_cast<std::uint32_t>(desk.displays.size());
}

std::optional<std::vector<DisplayID>> DeskDisplays::onlineDisplayList(std::uint32_t maximum) {
  if (faults.strikes("DisplaySystem.onlineDisplayList")) return std::nullopt;
  std::vector<DisplayID> list;
  for (const auto& display : desk.displays) {
    if (list.size() < maximum) list.push_back(display.identifier);
  }
  return list;
}

bool DeskDisplays::isBuiltIn(DisplayID display) {
  if (faults.strikes("DisplaySystem.isBuiltIn")) return false;
  const auto* const described = desk.display(display);
  return described != nullptr && described->isBuiltIn;
}

std::uint32_t DeskDisplays::vendorNumber(DisplayID display) {
  return number("DisplaySystem.vendorNumber", display, &DisplayDescription::vendor);
}

std::uint32_t DeskDisplays::modelNumber(DisplayID display) {
  return number("DisplaySystem.modelNumber", display, &DisplayDescription::model);
}

std::uint32_t DeskDisplays::serialNumber(DisplayID display) {
  return number("DisplaySystem.serialNumber", display, &DisplayDescription::serial);
}

std::uint32_t DeskDisplays::number(std::string_view call, DisplayID display,
                                   std::uint32_t DisplayDescription::*which) {
  if (faults.strikes(call)) return 0;
  const auto* const described = desk.display(display);
  return described == nullptr ? 0 : described->*which;
}

std::vector<Screen> DeskDisplays::screens() {
  if (faults.strikes("DisplaySystem.screens")) return {};
  std::vector<Screen> list;
  for (const auto& display : desk.displays) {
    if (display.screen == ScreenPresence::none) continue;
    Screen screen{std::nullopt, display.frame, display.name, display.headroom};
    if (display.screen == ScreenPresence::numbered) screen.number = display.identifier;
    list.push_back(screen);
  }
  return list;
}

std::optional<Screen> DeskDisplays::mainScreen() {
  const auto all = screens();
  return all.empty() ? std::nullopt : std::optional(all.front());
}

Point DeskDisplays::pointerPosition() {
  constexpr double beyondEveryScreen = -1e9;
  if (faults.strikes("DisplaySystem.pointerPosition")) {
    return {beyondEveryScreen, beyondEveryScreen};
  }
  return hardware.pointer();
}

}  // namespace brivane
