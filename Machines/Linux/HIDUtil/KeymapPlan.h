#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Machines/Linux/HIDUtil/HIDUsages.h"
#include "Machines/Linux/HIDUtil/UserKeyMapping.h"

namespace brivane {

/// What a keyboard sends for a key: 1 to 32 opaque bytes.
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
  /// Its own code, a brightness key's.
  KeyCode original = 0;
  KeyCode relay = 0;

  bool operator==(const ChangedKey&) const = default;
};

/// A brightness key of a keyboard: its own code, its current and its wanted code.
struct PlannedKey {
  Scancode scancode;
  KeyCode original = 0;
  KeyCode current = 0;
  KeyCode wanted = 0;

  bool operator==(const PlannedKey&) const = default;
};

/// The relay keys' codes by the brightness keys' codes. Of several entries for one source the first
/// counts; entries with other sources or destinations are skipped.
std::map<KeyCode, KeyCode> relaysIn(const UserKeyMapping& mapping);

/// The keyboard's brightness keys. A key in `changed` counts as one while it still has the relay
/// key's code; otherwise another program has changed it since. Pure.
std::vector<PlannedKey> planKeymap(const std::string& device, const std::vector<KeymapKey>& keymap,
                                   const std::vector<ChangedKey>& changed,
                                   const std::map<KeyCode, KeyCode>& relays);

}  // namespace brivane
