#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <variant>

#include "BrivaneCore/Seams/HotkeyPort.h"

namespace brivane {

/// A key and the modifiers that a hotkey wants with it: a virtual key code, and the sum of 256
/// (command), 512 (shift), 2048 (option) and 4096 (control).
struct KeyCombination {
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;

  bool operator==(const KeyCombination&) const = default;
};

/// Hotkeys, and what a keyboard's keys mean to them. Who comes first has a combination. Main
/// thread.
class HotkeyTable {
 public:
  using Receiver = std::function<void(HotkeyEvent event)>;

  /// The status of a combination that somebody has already.
  static constexpr HotkeyStatus alreadyTaken = -9878;

  std::variant<HotkeyReference, HotkeyStatus> add(KeyCombination combination, Receiver receiver);
  /// The receiver is not called any more. False when there is no such hotkey.
  bool remove(HotkeyReference reference);
  /// The combination is free again, and the receiver hears of no press any more; if the hotkey is
  /// held, it still hears of its releases.
  void retire(HotkeyReference reference);

  /// An ordinary key goes down while exactly the modifiers of `combination` are; whether it is
  /// somebody's hotkey.
  bool press(KeyCombination combination);
  /// The key goes up, and the hotkeys held with it do, also those that have lost a modifier before.
  void releaseKey(std::uint32_t keyCode);
  /// Hotkeys that need a modifier which is not in `modifiers` go up, although their key is down.
  void keepModifiers(std::uint32_t modifiers);

 private:
  enum class Hold { none, keyWithoutModifiers, whole };

  struct Entry {
    KeyCombination combination;
    Receiver receiver;
    Hold hold = Hold::none;
    bool isRetired = false;
  };

  std::map<HotkeyReference, Entry>::iterator find(KeyCombination combination);
  template <typename Condition>
  void releaseWhere(const Condition& condition, Hold remaining);

  std::map<HotkeyReference, Entry> entries;
  HotkeyReference nextReference = 1;
};

}  // namespace brivane
