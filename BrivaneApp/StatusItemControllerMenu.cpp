// What the menu holds, from top to bottom. What happens while it is open is in
// StatusItemController.cpp.

#include <utility>

#include "BrivaneApp/StatusItemController.h"
#include "BrivaneApp/Strings.h"

namespace brivane {

void StatusItemController::rebuildMenu() {
  forgetDisplays();
  std::vector<MenuItem> items;
  const auto targets = controller.refreshTargets();
  if (targets.empty()) {
    items.emplace_back(MenuText{catalogue.text(strings::menuNoDisplays), MenuTone::tertiaryLabel});
  }
  for (const DisplayTarget& target : targets) addDisplay(target, items);
  items.emplace_back(MenuSeparator{});
  addHotkeySection(items);
  items.emplace_back(MenuSeparator{});
  addLevelCommands(items);
  items.emplace_back(MenuSeparator{});
  addProgramCommands(items);
  menu.setItems(std::move(items));
}

void StatusItemController::forgetDisplays() {
  headerItems.clear();
  statusItems.clear();
  renderedControllable.clear();
  sliderRows.clear();
  displayNames.clear();
}

void StatusItemController::addDisplay(const DisplayTarget& target, std::vector<MenuItem>& items) {
  displayNames[target.displayID] = target.name;
  if (const auto level = controller.level(target.displayID)) {
    addLevel(target, *level, items);
  } else {
    addStatus(target, items);
  }
}

void StatusItemController::addLevel(const DisplayTarget& target, Percent level,
                                    std::vector<MenuItem>& items) {
  const DisplayID display = target.displayID;
  renderedControllable.insert(display);
  headerItems[display] = items.size();
  items.emplace_back(MenuText{texts.levelTitle(target.name, level), MenuTone::label});
  auto& row =
      sliderRows
          .try_emplace(display, runtime, SliderPlace{menu, items.size()},
                       brightnessSettings.levelRange(),
                       [this, display](Percent chosen) { controller.setLevel(chosen, display); })
          .first->second;
  items.emplace_back(row.item(catalogue, target.name, level));
}

void StatusItemController::addStatus(const DisplayTarget& target, std::vector<MenuItem>& items) {
  statusItems[target.displayID] = items.size();
  items.emplace_back(MenuText{statusTitle(target.displayID), MenuTone::tertiaryLabel});
}

std::string StatusItemController::statusTitle(DisplayID display) const {
  const std::string status = displays.isBuiltIn(display)
                                 ? texts.builtInStatus()
                                 : texts.retryStatus(controller.retryStatus(display));
  return texts.statusTitle(displayNames.at(display), status);
}

void StatusItemController::addHotkeySection(std::vector<MenuItem>& items) {
  const auto brighten = bindings.brightnessUpBinding().displayName(keyboard);
  const auto dim = bindings.brightnessDownBinding().displayName(keyboard);
  items.emplace_back(MenuText{texts.hotkeysSummary(brighten, dim), MenuTone::secondaryLabel});
  items.emplace_back(command(strings::menuChangeHotkeys, &StatusItemController::editHotkeys));
  systemBrightnessKeysItem = {items.size(), relaySettings.systemBrightnessKeysEnabled()};
  items.emplace_back(command(strings::menuUseSystemBrightnessKeys,
                             &StatusItemController::toggleSystemBrightnessKeys,
                             systemBrightnessKeysItem.isChecked));
}

void StatusItemController::addLevelCommands(std::vector<MenuItem>& items) {
  items.emplace_back(
      command(strings::menuRestoreSavedBrightness, &StatusItemController::restoreSavedBrightness));
  items.emplace_back(command(strings::menuUndimAll, &StatusItemController::undimAll));
  items.emplace_back(command(strings::menuRetryDisconnected, &StatusItemController::retryNow));
}

void StatusItemController::addProgramCommands(std::vector<MenuItem>& items) {
  items.emplace_back(command(strings::menuLaunchAtLogin, &StatusItemController::toggleLaunchAtLogin,
                             loginItem.isEnabled()));
  items.emplace_back(command(strings::menuQuit, &StatusItemController::quit, false, "q"));
}

MenuCommand StatusItemController::command(std::string_view titleKey,
                                          void (StatusItemController::*action)(), bool isChecked,
                                          const std::string& keyEquivalent) {
  return {catalogue.text(titleKey), isChecked, keyEquivalent,
          [this, action] { (this->*action)(); }};
}

}  // namespace brivane
