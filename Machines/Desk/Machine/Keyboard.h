#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "BrivaneCore/Seams/Keyboard.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Desk/File/KeyTable.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// A pressed ordinary key that is no program's hotkey.
struct UnclaimedKey {
  /// A virtual key code, see `Keyboard`.
  std::uint16_t keyCode = 0;
  /// See `modifierFlag`.
  std::uint64_t modifierFlags = 0;

  bool operator==(const UnclaimedKey&) const = default;
};

/// The desk's keyboard: the seam, and its keys for the simulated user.
///
/// A key goes through the HID mapping first. A resulting brightness key goes through the event taps
/// and, unless one consumes it, to the operating system, which changes the built-in panel; held
/// down, it repeats. A resulting ordinary key goes to the program that has it as a hotkey, else to
/// `onUnclaimedKey`. Main thread; all of that has happened when a call returns, or the key was
/// forwarded to the process that handles keys.
class DeskKeyboard : public Keyboard {
 public:
  DeskKeyboard(DeskHardware& deskHardware, Faults& machineFaults, Runtime& machineRuntime);

  bool hasLayout() override;
  std::optional<std::string> baseCharacter(std::uint16_t keyCode) override;
  std::uint64_t modifierFlags() override;
  bool isKeyDown(std::uint16_t keyCode) override;

  /// Presses or releases an ordinary key or modifier. Unknown codes, presses of keys that are down
  /// and releases of keys that are up are ignored.
  void pressKey(std::uint16_t keyCode);
  void releaseKey(std::uint16_t keyCode);
  void pressBrightness(BrightnessKey key);
  void releaseBrightness(BrightnessKey key);
  /// Whether the physical key is down, regardless of the mapping.
  bool isPressed(std::uint16_t keyCode) const;
  bool isPressed(BrightnessKey key) const;

  /// Before the mapping, on this desk's keyboard.
  HIDUsage usageOf(BrightnessKey key) const;

  /// Receives keys that are no program's hotkey; may be empty.
  std::function<void(const UnclaimedKey& key)> onUnclaimedKey;

 private:
  void change(const KeyChange& change);
  void take(const KeyChange& change);
  void press(HIDUsage physical);
  void release(HIDUsage physical);
  void keyDown(std::uint16_t keyCode);
  void keyUp(std::uint16_t keyCode);
  void brightnessDown(BrightnessKey key, bool isRepeat);
  void startRepeating(HIDUsage physical, BrightnessKey key);
  HIDUsage mapped(HIDUsage physical);

  DeskHardware& hardware;
  Faults& faults;
  Runtime& runtime;
  std::map<HIDUsage, TimerID> repeats;
  const Observation forwardedKeys;
};

}  // namespace brivane
