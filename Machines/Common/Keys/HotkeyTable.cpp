#include "Machines/Common/Keys/HotkeyTable.h"

#include <algorithm>
#include <vector>

namespace brivane {

std::variant<HotkeyReference, HotkeyStatus> HotkeyTable::add(KeyCombination combination,
                                                             Receiver receiver) {
  if (find(combination) != entries.end()) return alreadyTaken;
  const auto reference = nextReference++;
  entries.emplace(reference, Entry{combination, std::move(receiver)});
  return reference;
}

bool HotkeyTable::remove(HotkeyReference reference) {
  return entries.erase(reference) != 0;
}

void HotkeyTable::retire(HotkeyReference reference) {
  const auto found = entries.find(reference);
  if (found == entries.end()) return;
  if (found->second.hold == Hold::none) {
    entries.erase(found);
  } else {
    found->second.isRetired = true;
  }
}

bool HotkeyTable::press(KeyCombination combination) {
  const auto found = find(combination);
  if (found == entries.end()) return false;
  found->second.hold = Hold::whole;
  // Copied: the receiver may remove the entry.
  const auto receiver = found->second.receiver;
  if (receiver) receiver(HotkeyEvent::pressed);
  return true;
}

void HotkeyTable::releaseKey(std::uint32_t keyCode) {
  const auto isHeld = [&](const Entry& entry) {
    return entry.hold != Hold::none && entry.combination.keyCode == keyCode;
  };
  releaseWhere(isHeld, Hold::none);
}

void HotkeyTable::keepModifiers(std::uint32_t modifiers) {
  const auto losesModifier = [&](const Entry& entry) {
    return entry.hold == Hold::whole && (entry.combination.modifiers & ~modifiers) != 0;
  };
  releaseWhere(losesModifier, Hold::keyWithoutModifiers);
}

std::map<HotkeyReference, HotkeyTable::Entry>::iterator HotkeyTable::find(
    KeyCombination combination) {
  return std::ranges::find_if(entries, [&](const auto& entry) {
    return entry.second.combination == combination && !entry.second.isRetired;
  });
}

template <typename Condition>
void HotkeyTable::releaseWhere(const Condition& condition, Hold remaining) {
  std::vector<HotkeyReference> released;
  for (const auto& [reference, entry] : entries) {
    if (condition(entry)) released.push_back(reference);
  }
  for (const auto reference : released) {
    const auto found = entries.find(reference);
    if (found == entries.end()) continue;
    const auto receiver = found->second.receiver;
    found->second.hold = remaining;
    if (found->second.isRetired && remaining == Hold::none) entries.erase(found);
    if (receiver) receiver(HotkeyEvent::released);
  }
}

}  // namespace brivane
