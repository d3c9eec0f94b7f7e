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
  AccessibilityRetryController::stop();
}

void AccessibilityRetryController::start() {
  runtime.cancel(tapRetryTimer);
  tapRetryTimer = runtime.every(retryPeriod, [this] { retry(); });
}

void AccessibilityRetryController::stop() {
  runtime.cancel(std::exchange(tapRetryTimer, 0));
}

void AccessibilityRetryController::retry() {
  if (!permission.isGranted() || !hotkeys.startEventTap()) return;
  stop();
  statusItem.refresh();
  log.write("Brivane: Accessibility granted — brightness keys now active.");
}

}  // namespace brivane
