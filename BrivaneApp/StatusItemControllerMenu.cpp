// The menu's items, from top to bottom, and how a refresh updates them. Live updates and commands
// are in StatusItemController.cpp.

#include <utility>

#include "BrivaneApp/StatusItemController.h"
#include "BrivaneApp/Strings.h"
#include "BrivaneCore/DDC/RetryStatus.h"
#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

std::string retryText(RetryStatus::DisplayState state, const StringCatalogue& catalogue) {
  using Kind = RetryStatus::DisplayState::Kind;
  switch (state.kind) {
    case Kind::nextTry:
      return catalogue.format(strings::menuDisplayNextTry, {std::to_string(state.seconds)});
    case Kind::retryingNow:
      return catalogue.text(strings::menuDisplayRetryingNow);
    case Kind::noDDC:
      break;
  }
  return catalogue.text(strings::menuDisplayNoDDC);
}

}  // namespace

void StatusItemController::rebuildMenu() {
  writeWaitingLevels();
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

/// Sliders that are replaced would drop their pending values.
void StatusItemController::writeWaitingLevels() {
  for (auto& [display, row] : sliderRows) {
    if (row.hasWaitingWrite() && controller.isOnline(display)) row.flush();
  }
}

void StatusItemController::forgetDisplays() {
  headerItems.clear();
  statusItems.clear();
  renderedControllable.clear();
  sliderRows.clear();
  displayNames.clear();
  renderedRange = brightnessSettings.levelRange();
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
  items.emplace_back(MenuText{levelTitle(display, level), MenuTone::label});
  auto& row =
      sliderRows
          .try_emplace(display, runtime, SliderPlace{menu, items.size()}, renderedRange,
                       [this, display](Percent chosen) { controller.setLevel(chosen, display); })
          .first->second;
  items.emplace_back(row.item(catalogue, target.name, level));
}

void StatusItemController::addStatus(const DisplayTarget& target, std::vector<MenuItem>& items) {
  statusItems[target.displayID] = items.size();
  items.emplace_back(MenuText{statusTitle(target.displayID), MenuTone::tertiaryLabel});
}

std::string StatusItemController::levelTitle(DisplayID display, Percent level) const {
  return catalogue.format(strings::menuDisplayLevelTitle,
                          {displayNames.at(display), std::to_string(level)});
}

std::string StatusItemController::statusTitle(DisplayID display) const {
  const std::string status =
      displays.isBuiltIn(display)
          ? catalogue.text(strings::menuDisplayBuiltIn)
          : retryText(controller.retryStatus(display).displayState(), catalogue);
  return catalogue.format(strings::menuDisplayStatusTitle, {displayNames.at(display), status});
}

std::string StatusItemController::hotkeysSummary() const {
  return catalogue.format(strings::menuHotkeysSummary,
                          {bindings.brightnessUpBinding().displayName(keyboard),
                           bindings.brightnessDownBinding().displayName(keyboard)});
}

void StatusItemController::addHotkeySection(std::vector<MenuItem>& items) {
  hotkeysSummaryItem = items.size();
  items.emplace_back(MenuText{hotkeysSummary(), MenuTone::secondaryLabel});
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
  launchAtLoginItem = items.size();
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

void StatusItemController::updateMenu() {
  const auto targets = controller.refreshTargets();
  if (!isBuiltFor(targets)) {
    rebuildMenu();
    return;
  }
  for (const DisplayTarget& target : targets) displayNames[target.displayID] = target.name;
  showLevels(controllableLevels(targets));
  menu.setTitle(hotkeysSummaryItem, hotkeysSummary());
  showSystemBrightnessKeys();
  menu.setChecked(launchAtLoginItem, loginItem.isEnabled());
}

/// Whether the menu's lines are those of `targets`, so that only titles and values may differ. A
/// slider's range and label, which has the display's name, can't change in place.
bool StatusItemController::isBuiltFor(const std::vector<DisplayTarget>& targets) const {
  MenuItemIndex line = 0;
  for (const DisplayTarget& target : targets) {
    const bool hasSlider = controller.level(target.displayID).has_value();
    if (lookUp(hasSlider ? headerItems : statusItems, target.displayID) != line) return false;
    if (hasSlider && displayNames.at(target.displayID) != target.name) return false;
    line += hasSlider ? 2 : 1;
  }
  return displayNames.size() == targets.size() && renderedRange == brightnessSettings.levelRange();
}

void StatusItemController::showSystemBrightnessKeys() {
  auto& [item, isChecked] = systemBrightnessKeysItem;
  isChecked = relaySettings.systemBrightnessKeysEnabled();
  menu.setChecked(item, isChecked);
}

}  // namespace brivane
