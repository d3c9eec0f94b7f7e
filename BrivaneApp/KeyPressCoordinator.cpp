// A HUD hides some time after the last present. While a connected monitor doesn't answer, its card
// is presented repeatedly, which also updates the countdown.
#include "BrivaneApp/KeyPressCoordinator.h"

#include <utility>

namespace brivane {
namespace {

constexpr double levelSeconds = 1.2;
constexpr double connectingSeconds = 4.0;
constexpr Microseconds connectingPeriod = std::chrono::milliseconds(250);

}  // namespace

KeyPressCoordinator::KeyPressCoordinator(Runtime& machineRuntime,
                                         BrightnessController& brightnessController,
                                         BrightnessHUD& brightnessHUD,
                                         MenuRefreshing& statusItemMenu)
    : controller(brightnessController),
      hud(brightnessHUD),
      statusItem(statusItemMenu),
      runtime(machineRuntime) {}

KeyPressCoordinator::~KeyPressCoordinator() {
  anchor.kill();
  KeyPressCoordinator::stop();
}

bool KeyPressCoordinator::handle(const Adjustment& adjustment) {
  return press(adjustment).kind != AdjustOutcome::Kind::passThrough;
}

AdjustOutcome KeyPressCoordinator::press(const Adjustment& adjustment) {
  hud.expect();
  auto outcome = controller.adjustDisplayUnderCursor(adjustment.delta, adjustment.snapToStep);
  if (outcome.kind == AdjustOutcome::Kind::handled) showLevel(outcome);
  if (outcome.kind == AdjustOutcome::Kind::connecting) {
    showConnecting(outcome.display, outcome.name);
  }
  return outcome;
}

void KeyPressCoordinator::showLevel(const AdjustOutcome& outcome) {
  stop();
  hud.present(HUDModel::Level{outcome.level}, outcome.display, levelSeconds);
  runtime.async([this, self = anchor.watch()] {
    if (self.isAlive()) statusItem.refresh();
  });
}

void KeyPressCoordinator::showConnecting(DisplayID display, const std::string& name) {
  presentConnecting(display, name, controller.retryStatus(display));
  stop();
  connectingTicker =
      runtime.every(connectingPeriod, [this, display, name] { updateConnecting(display, name); });
}

void KeyPressCoordinator::updateConnecting(DisplayID display, const std::string& name) {
  if (!hud.isVisible() || !std::holds_alternative<HUDModel::Connecting>(hud.model().state()))
    return stop();
  const auto status = controller.retryStatus(display);
  if (status.isRetrying && controller.isOnline(display)) {
    return presentConnecting(display, name, status);
  }
  stop();
  hud.dismiss();
}

void KeyPressCoordinator::presentConnecting(DisplayID display, const std::string& name,
                                            const RetryStatus& status) {
  hud.present(HUDModel::Connecting{name, status.secondsUntilNextAttempt}, display,
              connectingSeconds);
}

void KeyPressCoordinator::stop() {
  runtime.cancel(std::exchange(connectingTicker, 0));
}

}  // namespace brivane
