// The tool that installs the key mapping may report success and do nothing, so only the mapping
// that is read back counts. Other programs, and --unmap, can clear it at any time, and on some
// machines a keyboard that is attached later lacks it; while the feature is on a check once a
// minute, and after each new keyboard, restores it.
#include "BrivaneApp/SystemBrightnessKeyController.h"

#include <utility>

namespace brivane {
namespace {

constexpr Microseconds verificationPeriod = std::chrono::seconds(60);
/// A keyboard's devices appear within milliseconds of each other.
constexpr Microseconds keyboardBurst = std::chrono::milliseconds(500);

}  // namespace

SystemBrightnessKeyController::SystemBrightnessKeyController(
    ResidentMachine& machine, BuiltInPanelDriving& brightnessController,
    KeyMappingStore& keyMappingStore, RelayHotkeySwitching& relay)
    : controller(brightnessController),
      keyMapping(keyMappingStore),
      hotkeys(relay),
      runtime(machine.runtime()),
      notifications(machine.notifications()),
      defaults(machine.defaults()),
      log(machine.log()),
      settings(machine.defaults()) {}

SystemBrightnessKeyController::~SystemBrightnessKeyController() {
  SystemBrightnessKeyController::stop();
}

void SystemBrightnessKeyController::setEnabled(bool enabled) {
  store(enabled);
  enabled ? switchOn() : switchOff();
}

void SystemBrightnessKeyController::applyMapping() {
  keyMapping.apply(settings.relayUpKey(), settings.relayDownKey());
}

void SystemBrightnessKeyController::stop() {
  keyboards.reset();
  runtime.cancel(std::exchange(keyboardTimer, 0));
  runtime.cancel(std::exchange(relayVerifyTimer, 0));
}

void SystemBrightnessKeyController::switchOn() {
  const RelayKey up = settings.relayUpKey();
  const RelayKey down = settings.relayDownKey();
  const std::string names = std::string(up.name) + "/" + std::string(down.name);
  keyMapping.apply(up, down);
  if (!keyMapping.isApplied(up, down)) {
    log.write(
        "Brivane: hidutil accepted the mapping but it is not in force — reverting and leaving "
        "the brightness keys with macOS");
    return undo();
  }
  if (!hotkeys.setRelayHotkeysEnabled(true)) {
    log.write("Brivane: could not register " + names +
              " — another app may own them; reverting the mapping and leaving the brightness keys "
              "with macOS");
    return undo();
  }
  controller.setDrivesBuiltInPanel(true);
  startRelayVerification();
  log.write("Brivane: system brightness keys relayed through " + names);
}

void SystemBrightnessKeyController::switchOff() {
  release();
  log.write("Brivane: system brightness keys released back to macOS");
}

void SystemBrightnessKeyController::undo() {
  release();
  store(false);
}

void SystemBrightnessKeyController::release() {
  hotkeys.setRelayHotkeysEnabled(false);
  keyMapping.revert();
  controller.setDrivesBuiltInPanel(false);
  stop();
}

void SystemBrightnessKeyController::store(bool enabled) {
  defaults.set(RelaySettings::systemBrightnessKeysEnabledKey, {enabled});
}

void SystemBrightnessKeyController::startRelayVerification() {
  runtime.cancel(relayVerifyTimer);
  relayVerifyTimer = runtime.every(verificationPeriod, [this] { verifyRelay(); });
  keyboards = notifications.observeKeyboards([this] { keyboardAttached(); });
}

/// One check for all of a keyboard's devices.
void SystemBrightnessKeyController::keyboardAttached() {
  if (keyboardTimer != 0) return;
  keyboardTimer = runtime.after(keyboardBurst, [this] {
    keyboardTimer = 0;
    verifyRelay();
  });
}

void SystemBrightnessKeyController::verifyRelay() {
  if (!settings.systemBrightnessKeysEnabled()) return;
  const RelayKey up = settings.relayUpKey();
  const RelayKey down = settings.relayDownKey();
  if (keyMapping.isApplied(up, down)) return;
  log.write("Brivane: brightness key mapping went missing — re-applying");
  keyMapping.apply(up, down);
}

}  // namespace brivane
