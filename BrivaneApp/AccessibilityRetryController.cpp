#include "BrivaneApp/AccessibilityRetryController.h"

#include <utility>

namespace brivane {
namespace {

constexpr Microseconds retryPeriod = std::chrono::seconds(2);

}  // namespace

AccessibilityRetryController::AccessibilityRetryController(ResidentMachine& machine,
                                                           HotkeyManager& hotkeyManager,
                                                           MenuRefreshing& statusItemMenu)
    : hotkeys(hotkeyManager),
      statusItem(statusItemMenu),
      runtime(machine.runtime()),
      log(machine.log()),
      permission(machine) {}

AccessibilityRetryController::~AccessibilityRetryController() {
  anchor.kill();
  AccessibilityRetryController::stop();
}

void AccessibilityRetryController::start() {
  runtime.cancel(tapRetryTimer);
  tapRetryTimer = runtime.every(retryPeriod, [this] { retry(); });
}

void AccessibilityRetryController::stop() {
  runtime.cancel(std::exchange(tapRetryTimer, 0));
}

void AccessibilityRetryController::check() {
  if (!hotkeys.isEventTapActive() || permission.isGranted()) return;
  hotkeys.stopEventTap();
  start();
  statusItem.refresh();
  log.write("Brivane: Accessibility withdrawn — brightness keys are back with the system.");
}

void AccessibilityRetryController::checkLater() {
  runtime.async([this, watch = anchor.watch()] {
    if (watch.isAlive()) check();
  });
}

void AccessibilityRetryController::retry() {
  if (!permission.isGranted() || !hotkeys.startEventTap()) return;
  stop();
  statusItem.refresh();
  log.write("Brivane: Accessibility granted — brightness keys now active.");
}

}  // namespace brivane
