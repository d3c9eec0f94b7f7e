// Many announced screen changes change nothing, and monitors answer long after they are announced.
// So an announcement counts only when the arrangement differs, levels are restored a little later,
// and monitors that don't answer by then are polled every two seconds. A bus that appears changes
// nothing for monitors that answer, so only the others are retried.
#include "BrivaneApp/DisplayReconciler.h"

#include <utility>

namespace brivane {
namespace {

/// The kernel's driver of I2C device files announces a dozen buses within milliseconds, and udev
/// applies its rules to some at a time.
constexpr Microseconds busBurst = std::chrono::seconds(1);
constexpr Microseconds restoreDelay = std::chrono::seconds(2);
constexpr Microseconds recoveryPeriod = std::chrono::seconds(2);
constexpr Microseconds recoveryDuration = std::chrono::seconds(180);

}  // namespace

DisplayReconciler::DisplayReconciler(ResidentMachine& machine,
                                     DisplayInvalidating& brightnessController,
                                     MenuRefreshing& statusItemMenu,
                                     SystemBrightnessKeyController& systemBrightnessKeyController,
                                     DisplayArrangement currentArrangement)
    : controller(brightnessController),
      statusItem(statusItemMenu),
      systemBrightnessKeys(systemBrightnessKeyController),
      arrangement(std::move(currentArrangement)),
      runtime(machine.runtime()),
      displays(machine.displays()),
      notifications(machine.notifications()),
      log(machine.log()),
      diagnostics(machine.defaults()),
      relaySettings(machine.defaults()),
      laterTasks(machine.runtime()) {}

DisplayReconciler::~DisplayReconciler() {
  anchor.kill();
  DisplayReconciler::stop();
}

void DisplayReconciler::observeDisplayChanges() {
  screenParameters = notifications.observeScreenParameters([this] { screenParametersChanged(); });
  monitorBuses = notifications.observeMonitorBuses([this] { monitorBusAppeared(); });
}

void DisplayReconciler::observeWake() {
  didWake = notifications.observeDidWake([this] { reprobeAfterWake(); });
  screensDidWake = notifications.observeScreensDidWake([this] { reprobeAfterWake(); });
}

void DisplayReconciler::screenParametersChanged() {
  auto current = DisplayArrangement::current(displays);
  if (current == arrangement) {
    if (diagnostics.verboseKeyLog()) {
      log.write("Brivane: screen parameters changed but the arrangement did not — ignoring");
    }
    return;
  }
  arrangement = std::move(current);
  controller.invalidate();
  startRecoveryPolling();
  laterTasks.after(restoreDelay, [this] { restoreDisplays(); });
}

/// One retry for all buses of a burst.
void DisplayReconciler::monitorBusAppeared() {
  if (std::exchange(isRetryDue, true)) return;
  laterTasks.after(busBurst, [this] {
    isRetryDue = false;
    controller.retryPendingNow();
  });
}

void DisplayReconciler::reprobeAfterWake() {
  controller.invalidate();
  startRecoveryPolling();
  if (relaySettings.systemBrightnessKeysEnabled()) systemBrightnessKeys.applyMapping();
  restoreDisplays();
}

void DisplayReconciler::restoreDisplays() {
  extendedRangePending = !controller.reapplyGammaRamps();
  controller.restoreSavedBrightness([this, self = anchor.watch()] {
    if (self.isAlive()) statusItem.refresh();
  });
}

void DisplayReconciler::startRecoveryPolling() {
  stop();
  const Instant deadline = runtime.now() + recoveryDuration;
  recoveryTimer = runtime.every(recoveryPeriod, [this, deadline] { poll(deadline); });
}

void DisplayReconciler::poll(Instant deadline) {
  if (extendedRangePending) extendedRangePending = !controller.reapplyGammaRamps();
  controller.restoreLateMonitors();
  const bool isWaiting = controller.hasUnresolvedDisplays() || extendedRangePending;
  if (isWaiting && runtime.now() >= deadline) return stop();
  if (isWaiting) {
    controller.retryPendingNow();
  } else {
    stop();
  }
  statusItem.refresh();
}

void DisplayReconciler::stop() {
  runtime.cancel(std::exchange(recoveryTimer, 0));
}

}  // namespace brivane
