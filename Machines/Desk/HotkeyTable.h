#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <variant>
#include <vector>

#include "BrivaneCore/Seams/HotkeyPort.h"
#include "Machines/Desk/DeskDescription.h"

namespace brivane {

/// The system's hotkeys, of all programs on the desk. Who comes first has a combination. Main
/// thread.
class HotkeyTable {
 public:
  using Receiver = std::function<void(HotkeyEvent event)>;

  /// The status of a combination that somebody has already.
  static constexpr HotkeyStatus alreadyTaken = -9878;

  /// The applications' hotkeys come before all others.
  explicit HotkeyTable(const std::vector<RunningApplication>& applications);

  std::variant<HotkeyReference, HotkeyStatus> add(KeyCombination combination, Receiver receiver);
  /// The receiver is not called any more. False when there is no such hotkey.
  bool remove(HotkeyReference reference);

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
  };

  template <typename Condition>
  void releaseWhere(const Condition& condition, Hold remaining);

  std::map<HotkeyReference, Entry> entries;
  HotkeyReference nextReference = 1;
};

}  // namespace brivane
