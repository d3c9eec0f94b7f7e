#include "BrivaneCore/Input/CarbonHotkeyRegistrar.h"

#include <string>
#include <utility>
#include <variant>

namespace brivane {
namespace {

/// 'TLWN', the signature of this program's hotkeys.
constexpr std::uint32_t signature = 0x544C574E;

}  // namespace

CarbonHotkeyRegistrar::CarbonHotkeyRegistrar(Hotkeys& systemHotkeys, SystemLog& systemLog)
    : hotkeys(systemHotkeys), log(systemLog) {}

CarbonHotkeyRegistrar::~CarbonHotkeyRegistrar() {
  CarbonHotkeyRegistrar::unregisterAll();
}

void CarbonHotkeyRegistrar::installHandler(Callback pressed, Callback released) {
  onPressed = std::move(pressed);
  onReleased = std::move(released);
  if (carbonHandler) return;
  carbonHandler =
      hotkeys.installHandler([this](HotkeyEvent event, HotkeyID hotkey) { handle(event, hotkey); });
  if (!carbonHandler) {
    log.write("Brivane: could not install the hotkey handler — hotkeys do nothing");
  }
}

bool CarbonHotkeyRegistrar::registerHotkey(const HotkeyBinding& binding, std::uint32_t id) {
  const auto result = hotkeys.registerHotkey(binding.keyCode, binding.modifiers, {signature, id});
  if (const auto* status = std::get_if<HotkeyStatus>(&result)) {
    log.write("Brivane: could not register hotkey " + binding.describedKeys() + " (status " +
              std::to_string(*status) + ") — another app may own it");
    return false;
  }
  carbonRefs.push_back(std::get<HotkeyReference>(result));
  registeredIDs.insert(id);
  return true;
}

bool CarbonHotkeyRegistrar::isRegistered(std::uint32_t id) const {
  return registeredIDs.contains(id);
}

void CarbonHotkeyRegistrar::unregisterAll() {
  for (const HotkeyReference reference : carbonRefs) hotkeys.unregisterHotkey(reference);
  carbonRefs.clear();
  registeredIDs.clear();
  if (!carbonHandler) return;
  hotkeys.removeHandler();
  carbonHandler = false;
}

void CarbonHotkeyRegistrar::handle(HotkeyEvent event, HotkeyID hotkey) const {
  // A copy: the callback may install others.
  const Callback callback = event == HotkeyEvent::pressed ? onPressed : onReleased;
  if (callback) callback(hotkey.id);
}

}  // namespace brivane
