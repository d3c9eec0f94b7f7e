#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "BrivaneApp/BrightnessSliderRow.h"
#include "BrivaneApp/LoginItem.h"
#include "BrivaneApp/MenuRefreshing.h"
#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Levels/BrightnessSettings.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneUI/Frame/Frame.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// The program's status item: a menu with a block per display, the hotkeys in force and commands.
/// An open menu is updated four times a second. Main thread.
class StatusItemController : public MenuDelegate, public MenuRefreshing {
 public:
  /// All arguments must outlive the controller; the catalogue is the application's.
  StatusItemController(ResidentMachine& machine, Frame& frame,
                       const StringCatalogue& stringCatalogue,
                       BrightnessController& brightnessController);
  ~StatusItemController() override;
  StatusItemController(const StatusItemController&) = delete;
  StatusItemController& operator=(const StatusItemController&) = delete;

  /// Shows levels or states that changed elsewhere, by a later task of the main queue.
  void refresh() override;

  /// Opens the menu at the pointer, as the status item may be hidden.
  void openMenu();

  bool isInStatusBar() const { return statusItem->isInStatusBar(); }

  void menuWillOpen() override;
  void menuDidClose() override;

 private:
  BrightnessController& controller;

 public:
  /// Opens the hotkey editor.
  std::function<void()> onEditHotkeys;
  /// Switches the key relay; the settings have the result.
  std::function<void(bool enabled)> onToggleSystemBrightnessKeys;
  /// The menu opens or has closed.
  std::function<void(bool isOpen)> onMenuOpen;

 private:
  /// An item's position in the menu.
  using MenuItemIndex = std::size_t;

  void configureButton();

  void rebuildMenu();
  void writeWaitingLevels();
  void forgetDisplays();
  void addDisplay(const DisplayTarget& target, std::vector<MenuItem>& items);
  void addLevel(const DisplayTarget& target, Percent level, std::vector<MenuItem>& items);
  void addStatus(const DisplayTarget& target, std::vector<MenuItem>& items);
  void addHotkeySection(std::vector<MenuItem>& items);
  void addLevelCommands(std::vector<MenuItem>& items);
  void addProgramCommands(std::vector<MenuItem>& items);
  MenuCommand command(std::string_view titleKey, void (StatusItemController::*action)(),
                      bool isChecked = false, const std::string& keyEquivalent = "");
  std::string levelTitle(DisplayID display, Percent level) const;
  std::string statusTitle(DisplayID display) const;
  std::string hotkeysSummary() const;

  void updateMenu();
  bool isBuiltFor(const std::vector<DisplayTarget>& targets) const;
  void showSystemBrightnessKeys();

  void startLiveUpdates();
  void stopLiveUpdates();
  void applyLiveValues();
  std::map<DisplayID, Percent> controllableLevels(const std::vector<DisplayTarget>& targets) const;
  void showLevels(const std::map<DisplayID, Percent>& levels);
  void resyncAtMostOncePerSecond();

  void editHotkeys();
  void toggleSystemBrightnessKeys();
  void restoreSavedBrightness();
  void undimAll();
  void retryNow();
  void toggleLaunchAtLogin();
  void quit();

  std::unique_ptr<StatusItem> statusItem;
  MenuView& menu;
  bool isMenuOpen = false;
  std::map<DisplayID, MenuItemIndex> headerItems;
  std::map<DisplayID, MenuItemIndex> statusItems;
  std::set<DisplayID> renderedControllable;
  /// The range of all sliders.
  PercentRange renderedRange;
  std::map<DisplayID, BrightnessSliderRow> sliderRows;
  std::map<DisplayID, std::string> displayNames;
  /// 0 while the menu is closed.
  TimerID liveUpdateTimer = 0;
  /// Absent before the first resynchronisation.
  std::optional<Instant> lastLiveResync;

  struct CheckedItem {
    MenuItemIndex index = 0;
    bool isChecked = false;
  };
  MenuItemIndex hotkeysSummaryItem = 0;
  CheckedItem systemBrightnessKeysItem;
  MenuItemIndex launchAtLoginItem = 0;

  Runtime& runtime;
  GammaTables& gammaTables;
  DisplaySystem& displays;
  Keyboard& keyboard;
  Application& application;
  const StringCatalogue& catalogue;
  const HotkeyBindingStore bindings;
  const RelaySettings relaySettings;
  const BrightnessSettings brightnessSettings;
  LoginItem loginItem;
  LivenessAnchor anchor;
};

}  // namespace brivane
