#include "Machines/Linux/HIDUtil/KeymapPlan.h"

#include <linux/input-event-codes.h>

#include <algorithm>

namespace brivane {
namespace {

/// The key's own code, if it is a brightness key's.
std::optional<KeyCode> ownCode(const std::string& device, const KeymapKey& key,
                               const std::vector<ChangedKey>& changed) {
  if (key.keycode == KEY_BRIGHTNESSUP || key.keycode == KEY_BRIGHTNESSDOWN) return key.keycode;
  const auto found = std::find_if(changed.begin(), changed.end(), [&](const ChangedKey& change) {
    return change.device == device && change.scancode == key.scancode &&
           change.relay == key.keycode;
  });
  if (found == changed.end()) return std::nullopt;
  return found->original;
}

}  // namespace

std::map<KeyCode, KeyCode> relaysIn(const UserKeyMapping& mapping) {
  std::map<KeyCode, std::optional<KeyCode>> first;
  for (const KeyMappingEntry& entry : mapping) {
    if (const auto key = brightnessKeyCode(entry.source)) {
      first.emplace(*key, relayKeyCode(entry.destination));
    }
  }
  std::map<KeyCode, KeyCode> relays;
  for (const auto& [key, relay] : first) {
    if (relay) relays.emplace(key, *relay);
  }
  return relays;
}

std::vector<PlannedKey> planKeymap(const std::string& device, const std::vector<KeymapKey>& keymap,
                                   const std::vector<ChangedKey>& changed,
                                   const std::map<KeyCode, KeyCode>& relays) {
  std::vector<PlannedKey> planned;
  for (const KeymapKey& key : keymap) {
    const auto own = ownCode(device, key, changed);
    if (!own) continue;
    const auto relay = relays.find(*own);
    planned.push_back(
        {key.scancode, *own, key.keycode, relay == relays.end() ? *own : relay->second});
  }
  return planned;
}

}  // namespace brivane
