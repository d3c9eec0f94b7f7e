#include "BrivaneCore/Input/HotkeyManager.h"

#include <memory>
#include <utility>

#include "BrivaneCore/Input/CarbonHotkeyRegistrar.h"
#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "BrivaneCore/Input/HotkeyNumbers.h"
#include "BrivaneCore/Input/InputDiagnosticsSettings.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"

namespace brivane {

HotkeyManager::HotkeyManager(ResidentMachine& machine, AdjustmentHandler adjustmentHandler)
    : handler(std::move(adjustmentHandler)),
      eventTap(machine),
      coordinator(machine,
                  std::make_unique<CarbonHotkeyRegistrar>(machine.hotkeys(), machine.log()),
                  handler),
      systemHotkeys(machine.hotkeys()),
      defaults(machine.defaults()),
      log(machine.log()) {
  eventTap.onBrightnessKey = [adjust = handler,
                              watch = anchor.watch()](BrightnessDirection direction) {
    return watch.isAlive() &&
           adjust({.delta = delta(direction), .snapToStep = true}, HotkeySource::mediaKey);
  };
  eventTap.onDisabled = [this] {
    if (onTapDisabled) onTapDisabled();
  };
}

HotkeyManager::~HotkeyManager() {
  anchor.kill();
  stop();
}

void HotkeyManager::start() {
  const bool tapActive = startEventTap();
  coordinator.registerHotkeys(tapActive);
  log.write(summary(tapActive));
}

bool HotkeyManager::startEventTap() {
  if (!eventTap.start()) return false;
  if (InputDiagnosticsSettings(defaults).keepFunctionKeyFallback()) return true;
  if (isFunctionKeyRegistered()) registerAnew(true);
  return true;
}

void HotkeyManager::stopEventTap() {
  eventTap.stop();
  reloadBindings();
}

void HotkeyManager::stop() {
  eventTap.stop();
  coordinator.ramp.stop();
  coordinator.registrar->unregisterAll();
  coordinator.areUserBindingsSuspended = false;
}

void HotkeyManager::reloadBindings() {
  coordinator.ramp.stop();
  registerAnew(isEventTapActive());
}

void HotkeyManager::suspendUserBindings(bool suspended) {
  if (suspended == coordinator.areUserBindingsSuspended) return;
  coordinator.areUserBindingsSuspended = suspended;
  reloadBindings();
}

bool HotkeyManager::setRelayHotkeysEnabled(bool enabled) {
  if (enabled != coordinator.isRelayActive) {
    coordinator.isRelayActive = enabled;
    reloadBindings();
  }
  return !enabled || relayHotkeysRegistered();
}

bool HotkeyManager::areUserBindingsRefused() const {
  return HotkeyBindingStore(defaults).customHotkeysEnabled() &&
         !coordinator.areUserBindingsSuspended &&
         !coordinator.registrar->isRegistered(hotkeyNumber::userUp) &&
         !coordinator.registrar->isRegistered(hotkeyNumber::userDown);
}

bool HotkeyManager::hasBrightnessKeys() const {
  return eventTap.getsBrightnessKeys() || relayHotkeysRegistered();
}

bool HotkeyManager::relayHotkeysRegistered() const {
  return coordinator.registrar->isRegistered(hotkeyNumber::relayUp) &&
         coordinator.registrar->isRegistered(hotkeyNumber::relayDown);
}

void HotkeyManager::setMenuOpen(bool isOpen) {
  const bool isHeld = InputDiagnosticsSettings(defaults).holdHotkeysWhileMenuIsOpen();
  systemHotkeys.setMenuOpen(isOpen && !isHeld);
}

/// A ramp in progress goes on.
void HotkeyManager::registerAnew(bool tapActive) {
  coordinator.registrar->unregisterAll();
  coordinator.registerHotkeys(tapActive);
}

bool HotkeyManager::isFunctionKeyRegistered() const {
  return coordinator.registrar->isRegistered(hotkeyNumber::functionKeyUp) ||
         coordinator.registrar->isRegistered(hotkeyNumber::functionKeyDown);
}

std::string HotkeyManager::summary(bool tapActive) const {
  const HotkeyBindingStore bindings(defaults);
  const bool enabled = bindings.customHotkeysEnabled();
  return std::string("Brivane: input path — event tap ") +
         (tapActive ? "ACTIVE (brightness keys)" : "unavailable (no Accessibility grant)") +
         "; hotkeys up=" + (enabled ? bindings.brightnessUpBinding().describedKeys() : "disabled") +
         " down=" + (enabled ? bindings.brightnessDownBinding().describedKeys() : "disabled") +
         "; fn+F1/F2 " + (isFunctionKeyRegistered() ? "ACTIVE" : "off") + "; relay " + relayState();
}

std::string HotkeyManager::relayState() const {
  const RelaySettings relay(defaults);
  if (isRelayActive()) {
    return std::string(relay.relayUpKey().name) + "/" + std::string(relay.relayDownKey().name);
  }
  return relay.systemBrightnessKeysEnabled() ? "pending" : "off";
}

}  // namespace brivane
