// Rebuilding an open menu ends a drag and moves items under the pointer. So titles, ticks and
// slider values change in place; only other lines, slider names or ranges need a rebuild.

#include "BrivaneApp/StatusItemController.h"

#include <algorithm>
#include <ranges>
#include <utility>

#include "BrivaneApp/Strings.h"
#include "BrivaneUI/AppIconArtwork.h"

namespace brivane {
namespace {

constexpr double liveUpdatePeriodSeconds = 0.25;
constexpr double secondsBetweenResyncs = 1.0;

}  // namespace

StatusItemController::StatusItemController(ResidentMachine& machine, Frame& frame,
                                           const StringCatalogue& stringCatalogue,
                                           BrightnessController& brightnessController)
    : controller(brightnessController),
      statusItem(frame.makeStatusItem()),
      menu(statusItem->menu()),
      runtime(machine.runtime()),
      gammaTables(machine.gammaTables()),
      displays(machine.displays()),
      keyboard(machine.keyboard()),
      application(frame.application()),
      catalogue(stringCatalogue),
      bindings(machine.defaults()),
      relaySettings(machine.defaults()),
      brightnessSettings(machine.defaults()),
      loginItem(machine) {
  configureButton();
  menu.setDelegate(this);
}

StatusItemController::~StatusItemController() {
  anchor.kill();
  // An open menu calls its delegate and its sliders' rows until it is destroyed.
  statusItem.reset();
  stopLiveUpdates();
}

void StatusItemController::refresh() {
  runtime.async([this, watch = anchor.watch()] {
    if (!watch.isAlive()) return;
    configureButton();
    if (isMenuOpen) updateMenu();
  });
}

void StatusItemController::openMenu() {
  menu.popUp();
}

void StatusItemController::menuWillOpen() {
  isMenuOpen = true;
  if (onMenuOpen) onMenuOpen(true);
  rebuildMenu();
  startLiveUpdates();
}

void StatusItemController::menuDidClose() {
  isMenuOpen = false;
  if (onMenuOpen) onMenuOpen(false);
  stopLiveUpdates();
}

void StatusItemController::configureButton() {
  statusItem->configureButton({AppIconArtwork().body(), AppIconArtwork::canvas,
                               AppIconArtwork::canvas, catalogue.text(strings::menuTooltip),
                               AppIconArtwork::visiblePart});
}

void StatusItemController::startLiveUpdates() {
  stopLiveUpdates();
  liveUpdateTimer =
      runtime.every(fromSeconds(liveUpdatePeriodSeconds), [this, watch = anchor.watch()] {
        if (watch.isAlive()) applyLiveValues();
      });
}

void StatusItemController::stopLiveUpdates() {
  runtime.cancel(std::exchange(liveUpdateTimer, 0));
}

void StatusItemController::applyLiveValues() {
  const auto levels = controllableLevels(controller.refreshTargets());
  if (!std::ranges::equal(std::views::keys(levels), renderedControllable)) {
    rebuildMenu();
    return;
  }
  showLevels(levels);
  resyncAtMostOncePerSecond();
}

std::map<DisplayID, Percent> StatusItemController::controllableLevels(
    const std::vector<DisplayTarget>& targets) const {
  std::map<DisplayID, Percent> levels;
  for (const DisplayTarget& target : targets) {
    if (const auto level = controller.level(target.displayID)) levels[target.displayID] = *level;
  }
  return levels;
}

/// `levels`: of the displays that have sliders in the menu.
void StatusItemController::showLevels(const std::map<DisplayID, Percent>& levels) {
  for (const auto& [display, item] : statusItems) menu.setTitle(item, statusTitle(display));
  for (const auto& [display, level] : levels) {
    menu.setTitle(headerItems.at(display), levelTitle(display, level));
    sliderRows.at(display).follow(level);
  }
}

void StatusItemController::resyncAtMostOncePerSecond() {
  const Instant now = runtime.now();
  if (lastLiveResync && secondsBetween(*lastLiveResync, now) < secondsBetweenResyncs) return;
  lastLiveResync = now;
  controller.resyncCache();
}

void StatusItemController::editHotkeys() {
  if (onEditHotkeys) onEditHotkeys();
}

void StatusItemController::toggleSystemBrightnessKeys() {
  const bool isWanted = !systemBrightnessKeysItem.isChecked;
  if (onToggleSystemBrightnessKeys) onToggleSystemBrightnessKeys(isWanted);
  // The setting is off again if the relay could not be installed.
  showSystemBrightnessKeys();
}

void StatusItemController::restoreSavedBrightness() {
  controller.restoreSavedBrightness({});
}

/// Pending values were chosen before this command.
void StatusItemController::undimAll() {
  writeWaitingLevels();
  controller.restoreAllExtendedRange();
  gammaTables.discardForeignTables();
}

void StatusItemController::retryNow() {
  controller.retryNow();
}

void StatusItemController::toggleLaunchAtLogin() {
  loginItem.setEnabled(!loginItem.isEnabled());
}

/// Pending values would be dropped by the clean-up.
void StatusItemController::quit() {
  writeWaitingLevels();
  application.terminate();
}

}  // namespace brivane
