#include "Machines/Desk/Machine/Hotkeys.h"

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

std::string described(KeyCombination combination) {
  return "key " + std::to_string(combination.keyCode) + " modifiers " +
         std::to_string(combination.modifiers);
}

}  // namespace

bool DeskHotkeys::installHandler(Handler newHandler) {
  if (faults.strikes("Hotkeys.installHandler")) return false;
  *handler = std::move(newHandler);
  return true;
}

void DeskHotkeys::removeHandler() {
  if (!faults.strikes("Hotkeys.removeHandler")) *handler = nullptr;
}

std::variant<HotkeyReference, HotkeyStatus> DeskHotkeys::registerHotkey(std::uint32_t keyCode,
                                                                        std::uint32_t modifiers,
                                                                        HotkeyID hotkey) {
  if (faults.strikes("Hotkeys.registerHotkey")) return HotkeyTable::alreadyTaken;
  const KeyCombination combination{keyCode, modifiers};
  const auto receive = [&tracer = tracer, handler = handler, hotkey](HotkeyEvent event) {
    tracer.noteDetail([&] {
      return "hotkey " + std::to_string(hotkey.id) +
             (event == HotkeyEvent::pressed ? " pressed" : " released");
    });
    // Copied: the handler may remove itself.
    const Handler current = *handler;
    if (current) current(event, hotkey);
  };
  const auto result = table.add(combination, receive);
  const auto* const reference = std::get_if<HotkeyReference>(&result);
  if (reference != nullptr) references.emplace(*reference, combination);
  tracer.note([&] {
    return "hotkey " + described(combination) +
           (reference != nullptr ? " registered as " + std::to_string(hotkey.id) : " is taken");
  });
  return result;
}

void DeskHotkeys::unregisterHotkey(HotkeyReference reference) {
  if (faults.strikes("Hotkeys.unregisterHotkey")) return;
  if (hasEnded) return;
  const auto found = references.find(reference);
  if (found == references.end()) fatal("a hotkey was unregistered that isn't registered");
  table.retire(reference);
  tracer.note([&] { return "hotkey " + described(found->second) + " unregistered"; });
  references.erase(found);
}

void DeskHotkeys::releaseAll() {
  hasEnded = true;
  *handler = nullptr;
  for (const auto& [reference, combination] : references) {
    table.remove(reference);
  }
  references.clear();
}

}  // namespace brivane
