#pragma once

#include <map>
#include <mutex>
#include <optional>

#include "Machines/Common/Keys/HotkeyTable.h"
#include "Machines/Common/Keys/TapStream.h"
#include "Machines/Common/Processes/AnnouncedProcess.h"
#include "Machines/Desk/Hardware/EventDelivery.h"
#include "Machines/Desk/Hardware/HardwareState.h"

namespace brivane {

/// A desk's keys, the one process that handles them, and what programs have registered for them.
/// Main thread, the keys that are down: any thread.
class DeskInput {
 public:
  /// The desk file's applications take their hotkeys first.
  DeskInput(const DeskDescription& desk, StateFolder* stateFolder, EventDelivery& eventDelivery);

  KeysDown keysDown();
  /// False when the key is down already.
  bool putKeyDown(HIDUsage key, HIDUsage arrived);
  /// Returns the usage that the mapping gave the key when it was pressed; nothing when the key
  /// isn't down.
  std::optional<HIDUsage> takeKeyUp(HIDUsage key);

  /// Has this process handle the keys, unless another process does; then, from the first later call
  /// of this or of `handlesKeys` after that process has ended, which no event says.
  void claimKeys();
  /// Whether this process has claimed the keys and handles them.
  bool handlesKeys();
  /// Whether another process handles the keys.
  bool isHandledElsewhere() const;
  /// Announces the change to the process that handles the keys; false when it is this one, or when
  /// there is none, as in memory.
  bool forward(const KeyChange& change);

  /// Another application takes a hotkey; false when it is taken.
  bool takeHotkey(KeyCombination combination);
  /// It lets the hotkey go; false when no other application has it.
  bool freeHotkey(KeyCombination combination);

  // Of all programs on a desk in memory, of one process's with a folder.
  HotkeyTable hotkeys;
  TapStream taps;

 private:
  StateFolder* const folder;
  EventDelivery& events;
  std::map<KeyCombination, HotkeyReference> hotkeysOfOthers;
  std::mutex mutex;
  StoredState<KeysDown> pressed;
  /// The process that handles the keys.
  std::optional<AnnouncedProcess> owner;
  bool isClaimed = false;
  const Observation tapTimeouts;
};

}  // namespace brivane
