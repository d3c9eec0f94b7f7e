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

/// An ordinary key that went down and is nobody's hotkey.
struct UnclaimedKey {
  /// A virtual key code, see `Keyboard`.
  std::uint16_t keyCode = 0;
  /// See `modifierFlag`.
  std::uint64_t modifierFlags = 0;

  bool operator==(const UnclaimedKey&) const = default;
};

/// The desk's keyboard: the seam, and the keys themselves for whoever plays the user.
///
/// A key goes through the HID mapping first. What comes out as a brightness key goes through the
/// event taps and, unless one swallows it, to the operating system, which changes the built-in
/// panel; held down, it repeats. What comes out as an ordinary key goes to whoever has it as a
/// hotkey, else to `onUnclaimedKey`. Main thread; when a call returns, all of that has happened, or
/// the key was handed to the process whose affair it is.
class DeskKeyboard : public Keyboard {
 public:
  DeskKeyboard(DeskHardware& deskHardware, Faults& machineFaults, Runtime& machineRuntime);

  bool hasLayout() override;
  std::optional<std::string> baseCharacter(std::uint16_t keyCode) override;
  std::uint64_t modifierFlags() override;
  bool isKeyDown(std::uint16_t keyCode) override;

  /// The ordinary key or modifier at this place of the keyboard; codes that no key has, keys that
  /// are down already and, on releasing, keys that are not are ignored.
  void pressKey(std::uint16_t keyCode);
  void releaseKey(std::uint16_t keyCode);
  void pressBrightness(BrightnessKey key);
  void releaseBrightness(BrightnessKey key);
  /// Whether the key itself is down, whatever the mapping has made of it.
  bool isPressed(std::uint16_t keyCode) const;
  bool isPressed(BrightnessKey key) const;

  /// Where keys go that are nobody's hotkey; may be empty.
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
  HIDUsage usageOf(BrightnessKey key) const;

  DeskHardware& hardware;
  Faults& faults;
  Runtime& runtime;
  std::map<HIDUsage, TimerID> repeats;
  const Observation handedKeys;
};

}  // namespace brivane
