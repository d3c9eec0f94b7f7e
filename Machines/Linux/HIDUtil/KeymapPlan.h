#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Machines/Linux/HIDUtil/HIDUsages.h"
#include "Machines/Linux/HIDUtil/UserKeyMapping.h"

namespace brivane {

/// What a keyboard sends for a key: 1 to 32 bytes, of whatever meaning.
using Scancode = std::string;

/// One key of a keyboard's keymap.
struct KeymapKey {
  Scancode scancode;
  KeyCode keycode = 0;

  bool operator==(const KeymapKey&) const = default;
};

/// A key that was given a relay key's code.
struct ChangedKey {
  /// The kernel's name of the keyboard ("input17"), which it never uses twice between restarts.
  std::string device;
  Scancode scancode;
  /// The brightness key's code that it had.
  KeyCode original = 0;
  KeyCode relay = 0;

  bool operator==(const ChangedKey&) const = default;
};

/// A brightness key of a keyboard: the code it has of its own, has now, and is to have.
struct PlannedKey {
  Scancode scancode;
  KeyCode original = 0;
  KeyCode current = 0;
  KeyCode wanted = 0;

  bool operator==(const PlannedKey&) const = default;
};

/// The relay keys' codes by the brightness keys' codes. Of several entries for one source the first
/// counts; entries for other sources, or to other destinations, have no place in a keymap.
std::map<KeyCode, KeyCode> relaysIn(const UserKeyMapping& mapping);

/// The keyboard's brightness keys. A key that `changed` says was changed counts as one as long as
/// it still has the relay key's code; otherwise somebody else has changed it since. Pure.
std::vector<PlannedKey> planKeymap(const std::string& device, const std::vector<KeymapKey>& keymap,
                                   const std::vector<ChangedKey>& changed,
                                   const std::map<KeyCode, KeyCode>& relays);

}  // namespace brivane
