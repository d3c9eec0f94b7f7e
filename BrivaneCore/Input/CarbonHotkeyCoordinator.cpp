// A hotkey's release is reported when a modifier goes up, and when its key does. Shift may change
// while a relay key is held (it makes the sweep finer), so a relay key's release counts only once
// the keyboard has the key up.

#include "BrivaneCore/Input/CarbonHotkeyCoordinator.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "BrivaneCore/Input/HotkeyNumbers.h"
#include "BrivaneCore/Input/InputDiagnosticsSettings.h"
#include "BrivaneCore/Input/VirtualKeyCode.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

constexpr std::uint32_t f1 = 122;
constexpr std::uint32_t f2 = 120;
constexpr std::uint32_t noModifiers = 0;

/// What a press of the hotkey with that number asks for.
struct HotkeyPress {
  std::uint32_t id;
  BrightnessDirection direction;
  Adjustment firstStep;
  HotkeySource source;
  bool isFine;
};

constexpr Adjustment stepUp{RampEngine::step, true};
constexpr Adjustment stepDown{-RampEngine::step, true};
constexpr auto up = BrightnessDirection::up;
constexpr auto down = BrightnessDirection::down;

constexpr std::array<HotkeyPress, 8> hotkeyPresses = {{
    {hotkeyNumber::userUp, up, stepUp, HotkeySource::carbonHotkey, false},
    {hotkeyNumber::userDown, down, stepDown, HotkeySource::carbonHotkey, false},
    {hotkeyNumber::functionKeyUp, up, stepUp, HotkeySource::carbonHotkey, false},
    {hotkeyNumber::functionKeyDown, down, stepDown, HotkeySource::carbonHotkey, false},
    {hotkeyNumber::relayUp, up, stepUp, HotkeySource::hidRelay, false},
    {hotkeyNumber::relayDown, down, stepDown, HotkeySource::hidRelay, false},
    {hotkeyNumber::relayUpFine, up, {1, false}, HotkeySource::hidRelay, true},
    {hotkeyNumber::relayDownFine, down, {-1, false}, HotkeySource::hidRelay, true},
}};

HotkeyPress hotkeyPress(std::uint32_t id) {
  const auto found = std::ranges::find(hotkeyPresses, id, &HotkeyPress::id);
  if (found != hotkeyPresses.end()) return *found;
  return {id, down, stepDown, HotkeySource::carbonHotkey, false};
}

// The key that the user holds for the hotkey, where the keyboard can be asked about it.
std::optional<std::uint32_t> physicalKey(std::uint32_t id, const RelaySettings& relay) {
  if (id == hotkeyNumber::relayUp || id == hotkeyNumber::relayUpFine) {
    return relay.relayUpKey().virtualKeyCode;
  }
  if (id == hotkeyNumber::relayDown || id == hotkeyNumber::relayDownFine) {
    return relay.relayDownKey().virtualKeyCode;
  }
  return std::nullopt;
}

std::string describe(const HotkeyPress& press, bool wasHandled) {
  return "Brivane: hotkey id=" + std::to_string(press.id) + " brightness " +
         (press.direction == up ? "UP" : "DOWN") + (press.isFine ? " (fine)" : "") + " -> " +
         (wasHandled ? "handled" : "no controllable display under cursor");
}

}  // namespace

CarbonHotkeyCoordinator::CarbonHotkeyCoordinator(ResidentMachine& machine,
                                                 std::unique_ptr<HotkeyRegistering> hotkeyRegistrar,
                                                 AdjustmentHandler adjustmentHandler)
    : handler(std::move(adjustmentHandler)),
      ramp(machine.runtime(), machine.keyboard(),
           [this](const Adjustment& adjustment, HotkeySource source) {
             rampTicked(adjustment, source);
           }),
      registrar(std::move(hotkeyRegistrar)),
      defaults(machine.defaults()),
      keyboard(machine.keyboard()),
      log(machine.log()) {
  installHandler();
}

void CarbonHotkeyCoordinator::registerHotkeys(bool tapActive) {
  installHandler();
  watchedKey = pressedKey;
  const bool wantsUserBindings = HotkeyBindingStore(defaults).customHotkeysEnabled();
  if (wantsUserBindings && !areUserBindingsSuspended) registerUserBindings();
  if (isRelayActive) registerRelayKeys();
  if (tapActive && !InputDiagnosticsSettings(defaults).keepFunctionKeyFallback()) return;
  registerHotkey({f2, noModifiers}, hotkeyNumber::functionKeyUp);
  registerHotkey({f1, noModifiers}, hotkeyNumber::functionKeyDown);
}

void CarbonHotkeyCoordinator::handlePress(std::uint32_t id) {
  const HotkeyPress press = hotkeyPress(id);
  pressedKey = lookUp(keyCodes, id);
  watchedKey.reset();
  const bool wasHandled = handler(press.firstStep, press.source);
  if (InputDiagnosticsSettings(defaults).verboseKeyLog()) log.write(describe(press, wasHandled));
  // Even if no display took the press: the pointer may reach one while the key is held.
  ramp.begin(press.direction, press.source);
}

void CarbonHotkeyCoordinator::handleRelease(std::uint32_t id) {
  const auto key = physicalKey(id, RelaySettings(defaults));
  if (!key || !keyboard.isKeyDown(keyboardKeyCode(*key))) {
    ramp.stop();
    return;
  }
  if (InputDiagnosticsSettings(defaults).verboseKeyLog()) {
    log.write("Brivane: hotkey id=" + std::to_string(id) +
              " released but its key is still down — ramp continues");
  }
}

void CarbonHotkeyCoordinator::installHandler() {
  registrar->installHandler(
      [this, watch = anchor.watch()](std::uint32_t id) {
        if (watch.isAlive()) handlePress(id);
      },
      [this, watch = anchor.watch()](std::uint32_t id) {
        if (watch.isAlive()) handleRelease(id);
      });
}

void CarbonHotkeyCoordinator::registerHotkey(const HotkeyBinding& binding, std::uint32_t id) {
  registrar->registerHotkey(binding, id);
  keyCodes[id] = binding.keyCode;
}

void CarbonHotkeyCoordinator::registerUserBindings() {
  const HotkeyBindingStore bindings(defaults);
  registerHotkey(bindings.brightnessUpBinding(), hotkeyNumber::userUp);
  registerHotkey(bindings.brightnessDownBinding(), hotkeyNumber::userDown);
}

void CarbonHotkeyCoordinator::registerRelayKeys() {
  const RelaySettings relay(defaults);
  const std::uint32_t upKey = relay.relayUpKey().virtualKeyCode;
  const std::uint32_t downKey = relay.relayDownKey().virtualKeyCode;
  registerHotkey({upKey, noModifiers}, hotkeyNumber::relayUp);
  registerHotkey({downKey, noModifiers}, hotkeyNumber::relayDown);
  registerHotkey({upKey, HotkeyBinding::shift}, hotkeyNumber::relayUpFine);
  registerHotkey({downKey, HotkeyBinding::shift}, hotkeyNumber::relayDownFine);
}

void CarbonHotkeyCoordinator::rampTicked(const Adjustment& adjustment, HotkeySource source) {
  if (watchedKey && !keyboard.isKeyDown(keyboardKeyCode(*watchedKey))) {
    ramp.stop();
  } else {
    handler(adjustment, source);
  }
}

}  // namespace brivane
