#include "Machines/Mac/Hotkeys.h"

#include <Carbon/Carbon.h>

#include <array>
#include <utility>

#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"

namespace brivane {
namespace {

OSStatus hotkeyHandler(EventHandlerCallRef, EventRef event, void* userData) {
  if (event == nullptr || userData == nullptr) return noErr;
  const AutoreleasePool pool;
  return static_cast<MacHotkeys*>(userData)->handle(event);
}

/// Carbon's reference to a handler of hotkeys' events; null when Carbon refuses.
EventHandlerRef installHotkeyHandler(EventTargetRef target, void* owner) {
  const std::array<EventTypeSpec, 2> types = {
      {{kEventClassKeyboard, kEventHotKeyPressed}, {kEventClassKeyboard, kEventHotKeyReleased}}};
  EventHandlerRef reference = nullptr;
  const OSStatus status =
      InstallEventHandler(target, hotkeyHandler, types.size(), types.data(), owner, &reference);
  return status == noErr ? reference : nullptr;
}

void removeHotkeyHandler(void* reference) {
  if (reference != nullptr) RemoveEventHandler(static_cast<EventHandlerRef>(reference));
}

}  // namespace

MacHotkeys::~MacHotkeys() {
  for (const auto& [reference, hotkey] : registered) {
    UnregisterEventHotKey(static_cast<EventHotKeyRef>(hotkey));
  }
  MacHotkeys::setMenuOpen(false);
  MacHotkeys::removeHandler();
}

bool MacHotkeys::installHandler(Handler newHandler) {
  handler = std::move(newHandler);
  if (installed == nullptr) installed = installHotkeyHandler(GetApplicationEventTarget(), this);
  return installed != nullptr;
}

void MacHotkeys::removeHandler() {
  removeHotkeyHandler(std::exchange(installed, nullptr));
  handler = {};
}

std::variant<HotkeyReference, HotkeyStatus> MacHotkeys::registerHotkey(std::uint32_t keyCode,
                                                                       std::uint32_t modifiers,
                                                                       HotkeyID hotkey) {
  EventHotKeyRef reference = nullptr;
  const OSStatus status = RegisterEventHotKey(keyCode, modifiers, {hotkey.signature, hotkey.id},
                                              GetApplicationEventTarget(), 0, &reference);
  if (status != noErr) return HotkeyStatus{status};
  registered.emplace(nextReference, reference);
  return HotkeyReference{nextReference++};
}

void MacHotkeys::unregisterHotkey(HotkeyReference reference) {
  const auto found = registered.find(reference);
  if (found == registered.end()) return;
  UnregisterEventHotKey(static_cast<EventHotKeyRef>(found->second));
  registered.erase(found);
}

/// The dispatcher's handler takes each event, so that none comes a second time when the menu
/// closes.
void MacHotkeys::setMenuOpen(bool isOpen) {
  removeHotkeyHandler(std::exchange(installedForMenu, nullptr));
  if (isOpen) installedForMenu = installHotkeyHandler(GetEventDispatcherTarget(), this);
}

std::int32_t MacHotkeys::handle(void* carbonEvent) {
  const auto event = static_cast<EventRef>(carbonEvent);
  EventHotKeyID hotkey = {};
  const OSStatus status = GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID,
                                            nullptr, sizeof(hotkey), nullptr, &hotkey);
  if (status != noErr) return status;
  // Copied: the handler may replace or remove itself.
  const Handler called = handler;
  const bool isPress = GetEventKind(event) == kEventHotKeyPressed;
  if (called) {
    called(isPress ? HotkeyEvent::pressed : HotkeyEvent::released, {hotkey.signature, hotkey.id});
  }
  return noErr;
}

}  // namespace brivane
