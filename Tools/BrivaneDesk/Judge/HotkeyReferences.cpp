#include "Tools/BrivaneDesk/Judge/HotkeyReferences.h"

#include <algorithm>

namespace brivane::judge {
namespace {

constexpr std::uint32_t lastHotkey = 8;

}  // namespace

HotkeyReferences::HotkeyReferences(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "a hotkey is registered once and released once") {}

void HotkeyReferences::see(const TraceEvent& event) {
  if (const auto* const registered = event.as<HotkeyRegistered>()) {
    seeRegistered(event.time, *registered);
  } else if (const auto* const released = event.as<HotkeyUnregistered>()) {
    seeUnregistered(event.time, {released->keyCode, released->modifiers});
  } else if (event.as<ProgramKilled>() != nullptr) {
    hotkeys.clear();
  } else if (event.as<ProgramEnded>() != nullptr) {
    const bool isLeft = !hotkeys.empty() && !desk.faults.contains("Hotkeys.unregisterHotkey");
    if (isLeft) breach(event.time, std::to_string(hotkeys.size()) + " are left at the end");
    hotkeys.clear();
  }
}

void HotkeyReferences::seeRegistered(Microseconds time, const HotkeyRegistered& registered) {
  const Combination combination{registered.keyCode, registered.modifiers};
  const bool isTwice = std::ranges::any_of(
      hotkeys, [&](const auto& entry) { return entry.second == registered.hotkey; });
  const bool isRefused = desk.faults.contains("Hotkeys.unregisterHotkey");
  if ((isTwice && !isRefused) || hotkeys.contains(combination)) {
    breach(time, "hotkey " + std::to_string(registered.hotkey) + " is registered twice");
  }
  if (registered.hotkey < 1 || registered.hotkey > lastHotkey) {
    breach(time, "there is no hotkey " + std::to_string(registered.hotkey));
  }
  hotkeys[combination] = registered.hotkey;
}

void HotkeyReferences::seeUnregistered(Microseconds time, Combination combination) {
  if (hotkeys.erase(combination) == 0) breach(time, "a hotkey is released that is not registered");
}

}  // namespace brivane::judge
