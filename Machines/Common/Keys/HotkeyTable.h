#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <variant>

#include "BrivaneCore/Seams/Hotkeys.h"

namespace brivane {

/// A hotkey's virtual key code and modifiers, the sum of 256 (command), 512 (shift), 2048 (option)
/// and 4096 (control).
struct KeyCombination {
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;

  auto operator<=>(const KeyCombination&) const = default;
};

/// The registered hotkeys, and which of them are held. The first to register a combination has it.
/// Main thread.
class HotkeyTable {
 public:
  using Receiver = std::function<void(HotkeyEvent event)>;

  /// The status for a combination that is taken.
  static constexpr HotkeyStatus alreadyTaken = -9878;

  std::variant<HotkeyReference, HotkeyStatus> add(KeyCombination combination, Receiver receiver);
  /// Stops calling the receiver at once. False when there is no such hotkey.
  bool remove(HotkeyReference reference);
  /// Frees the combination. The receiver gets no more presses, but the releases of a held hotkey.
  void retire(HotkeyReference reference);

  /// An ordinary key goes down with exactly these modifiers; returns whether it is a hotkey.
  bool press(KeyCombination combination);
  /// The key goes up: releases its held hotkeys, also those that have lost a modifier before.
  void releaseKey(std::uint32_t keyCode);
  /// Releases held hotkeys with a modifier that is not in `modifiers`, although their key is down.
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
