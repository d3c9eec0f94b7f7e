// The mapping is applied when a key goes down; its release uses the same result even if the mapping
// has changed in between, as in a real keyboard's driver.
#include "Machines/Desk/Machine/Keyboard.h"

#include <algorithm>

#include "Machines/Desk/Hardware/KeyboardLayouts.h"

namespace brivane {
namespace {

TapEvent specialKeyEvent(BrightnessKey key, bool isDown, bool isRepeat) {
  return brightnessKeyEvent(key == BrightnessKey::up, isDown, isRepeat);
}

/// The modifiers that are down, as hotkey modifier bits.
std::uint32_t modifiersDown(const KeysDown& keys) {
  std::uint32_t modifiers = 0;
  for (const auto& [physical, arrived] : keys.arrived) {
    if (const auto keyCode = keyOfUsage(arrived)) modifiers |= modifierOfKey(*keyCode);
  }
  return modifiers;
}

/// Whether a key mapped to the usage is down; the mapping can map two keys to one.
bool isDown(const KeysDown& keys, HIDUsage arrived) {
  return std::ranges::any_of(keys.arrived,
                             [arrived](const auto& key) { return key.second == arrived; });
}

std::uint64_t asFlags(std::uint32_t modifiers) {
  std::uint64_t flags = 0;
  if ((modifiers & 256U) != 0) flags |= modifierFlag::command;
  if ((modifiers & 512U) != 0) flags |= modifierFlag::shift;
  if ((modifiers & 2048U) != 0) flags |= modifierFlag::option;
  if ((modifiers & 4096U) != 0) flags |= modifierFlag::control;
  return flags;
}

}  // namespace

DeskKeyboard::DeskKeyboard(DeskHardware& deskHardware, Faults& machineFaults,
                           Runtime& machineRuntime)
    : hardware(deskHardware),
      faults(machineFaults),
      runtime(machineRuntime),
      forwardedKeys(deskHardware.events.observe<KeyChange>([this](KeyChange change) {
        if (hardware.input.handlesKeys()) take(change);
      })) {}

bool DeskKeyboard::hasLayout() {
  if (faults.strikes("Keyboard.hasLayout")) return false;
  return hardware.description.keyboard.layout != KeyboardLayout::none;
}

std::optional<std::string> DeskKeyboard::baseCharacter(std::uint16_t keyCode) {
  if (faults.strikes("Keyboard.baseCharacter")) return std::nullopt;
  return characterOfKey(hardware.description.keyboard.layout, keyCode);
}

std::uint64_t DeskKeyboard::modifierFlags() {
  if (faults.strikes("Keyboard.modifierFlags")) return 0;
  return asFlags(modifiersDown(hardware.input.keysDown()));
}

bool DeskKeyboard::isKeyDown(std::uint16_t keyCode) {
  if (faults.strikes("Keyboard.isKeyDown")) return false;
  const auto usage = usageOfKey(keyCode);
  return usage && isDown(hardware.input.keysDown(), *usage);
}

void DeskKeyboard::pressKey(std::uint16_t keyCode) {
  if (const auto usage = usageOfKey(keyCode)) change({*usage, true});
}

void DeskKeyboard::releaseKey(std::uint16_t keyCode) {
  if (const auto usage = usageOfKey(keyCode)) change({*usage, false});
}

void DeskKeyboard::pressBrightness(BrightnessKey key) {
  change({usageOf(key), true});
}

void DeskKeyboard::releaseBrightness(BrightnessKey key) {
  change({usageOf(key), false});
}

bool DeskKeyboard::isPressed(std::uint16_t keyCode) const {
  const auto usage = usageOfKey(keyCode);
  return usage && hardware.input.keysDown().arrived.contains(*usage);
}

bool DeskKeyboard::isPressed(BrightnessKey key) const {
  return hardware.input.keysDown().arrived.contains(usageOf(key));
}

void DeskKeyboard::change(const KeyChange& change) {
  if (!hardware.input.forward(change)) take(change);
}

void DeskKeyboard::take(const KeyChange& change) {
  if (change.isDown) {
    press(change.key);
  } else {
    release(change.key);
  }
}

void DeskKeyboard::press(HIDUsage physical) {
  const HIDUsage arrived = mapped(physical);
  const bool wasDown = isDown(hardware.input.keysDown(), arrived);
  if (!hardware.input.putKeyDown(physical, arrived)) return;
  if (const auto key = brightnessKeyOfUsage(arrived)) {
    startRepeating(physical, *key);
    brightnessDown(*key, false);
  } else if (const auto keyCode = keyOfUsage(arrived); keyCode && !wasDown) {
    keyDown(*keyCode);
  }
}

void DeskKeyboard::release(HIDUsage physical) {
  const auto wasDown = hardware.input.takeKeyUp(physical);
  if (!wasDown) return;
  const HIDUsage arrived = *wasDown;
  if (const auto repeat = repeats.extract(physical)) runtime.cancel(repeat.mapped());
  if (const auto key = brightnessKeyOfUsage(arrived)) {
    hardware.input.taps.send(specialKeyEvent(*key, false, false));
  } else if (const auto keyCode = keyOfUsage(arrived);
             keyCode && !isDown(hardware.input.keysDown(), arrived)) {
    keyUp(*keyCode);
  }
}

void DeskKeyboard::keyDown(std::uint16_t keyCode) {
  if (modifierOfKey(keyCode) != 0) return;
  const auto modifiers = modifiersDown(hardware.input.keysDown());
  hardware.tracer->noteDetail([&] { return "key " + std::to_string(keyCode) + " down"; });
  if (hardware.input.hotkeys.press({keyCode, modifiers})) return;
  if (onUnclaimedKey) onUnclaimedKey({keyCode, asFlags(modifiers)});
}

void DeskKeyboard::keyUp(std::uint16_t keyCode) {
  auto& hotkeys = hardware.input.hotkeys;
  hardware.tracer->noteDetail([&] { return "key " + std::to_string(keyCode) + " up"; });
  hotkeys.releaseKey(keyCode);
  hotkeys.keepModifiers(modifiersDown(hardware.input.keysDown()));
}

void DeskKeyboard::brightnessDown(BrightnessKey key, bool isRepeat) {
  hardware.tracer->noteDetail(
      [&] { return std::string("brightness key ") + (key == BrightnessKey::up ? "up" : "down"); });
  const bool passed = hardware.input.taps.send(specialKeyEvent(key, true, isRepeat));
  if (passed) hardware.panels.changeSystemBrightness(key);
}

void DeskKeyboard::startRepeating(HIDUsage physical, BrightnessKey key) {
  const auto& keyboard = hardware.description.keyboard;
  const auto period = fromSeconds(keyboard.repeatPeriodSeconds);
  const auto first = [this, physical, key, period] {
    repeats[physical] = runtime.every(period, [this, key] { brightnessDown(key, true); });
    brightnessDown(key, true);
  };
  repeats[physical] = runtime.after(fromSeconds(keyboard.repeatDelaySeconds), first);
}

/// The mapping is applied once, never to its own result.
HIDUsage DeskKeyboard::mapped(HIDUsage physical) {
  const auto mapping = hardware.system.hidMapping();
  const auto found = std::ranges::find(mapping, physical, &HIDMappingEntry::source);
  return found == mapping.end() ? physical : found->destination;
}

HIDUsage DeskKeyboard::usageOf(BrightnessKey key) const {
  const bool isUp = key == BrightnessKey::up;
  switch (hardware.description.keyboard.brightnessUsages) {
    case BrightnessUsages::topCase:
      return isUp ? 0xFF'0000'0004 : 0xFF'0000'0005;
    case BrightnessUsages::vendor:
      return isUp ? 0xFF01'0000'0020 : 0xFF01'0000'0021;
    case BrightnessUsages::consumer:
      break;
  }
  return isUp ? 0xC'0000'006F : 0xC'0000'0070;
}

}  // namespace brivane
