#include "Machines/Desk/Hardware/DeskInput.h"

#include <unistd.h>

#include <system_error>
#include <utility>

namespace brivane {

DeskInput::DeskInput(const DeskDescription& desk, StateFolder* stateFolder,
                     EventDelivery& eventDelivery)
    : folder(stateFolder),
      events(eventDelivery),
      pressed({}, folder, "keys-down", 0),
      tapTimeouts(events.observe<TapTimeout>([this](TapTimeout) { taps.disableByTimeout(); })) {
  for (const auto& application : desk.applications) {
    for (const auto& combination : application.hotkeys) takeHotkey(combination);
  }
  if (folder != nullptr) owner.emplace(folder->path / "keyboard.lock");
}

KeysDown DeskInput::keysDown() {
  const std::lock_guard lock(mutex);
  return pressed.read();
}

bool DeskInput::putKeyDown(HIDUsage key, HIDUsage arrived) {
  const std::lock_guard lock(mutex);
  return pressed.update([&](KeysDown& keys) { return keys.arrived.emplace(key, arrived).second; });
}

std::optional<HIDUsage> DeskInput::takeKeyUp(HIDUsage key) {
  const std::lock_guard lock(mutex);
  return pressed.update([&](KeysDown& keys) -> std::optional<HIDUsage> {
    const auto found = keys.arrived.find(key);
    if (found == keys.arrived.end()) return std::nullopt;
    const HIDUsage arrived = found->second;
    keys.arrived.erase(found);
    return arrived;
  });
}

bool DeskInput::takeHotkey(KeyCombination combination) {
  const auto result = hotkeys.add(combination, nullptr);
  const auto* const reference = std::get_if<HotkeyReference>(&result);
  if (reference != nullptr) hotkeysOfOthers.emplace(combination, *reference);
  return reference != nullptr;
}

bool DeskInput::freeHotkey(KeyCombination combination) {
  const auto found = hotkeysOfOthers.find(combination);
  if (found == hotkeysOfOthers.end()) return false;
  hotkeys.remove(found->second);
  hotkeysOfOthers.erase(found);
  return true;
}

void DeskInput::claimKeys() {
  if (!owner) return;
  std::error_code failed;  // locking fails then
  if (!std::exchange(isClaimed, true)) std::filesystem::create_directories(folder->path, failed);
  owner->announce();
}

bool DeskInput::handlesKeys() {
  return isClaimed && owner && owner->announce();
}

bool DeskInput::isHandledElsewhere() const {
  const auto process = owner ? owner->find() : std::nullopt;
  return process && *process != ::getpid();
}

bool DeskInput::forward(const KeyChange& change) {
  if (!isHandledElsewhere()) return false;
  events.announce(change);
  return true;
}

}  // namespace brivane
