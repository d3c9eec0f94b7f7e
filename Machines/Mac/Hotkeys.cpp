#include "Machines/Mac/Hotkeys.h"

#include <Carbon/Carbon.h>

#include <array>

#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"

namespace brivane {
namespace {

OSStatus hotkeyHandler(EventHandlerCallRef, EventRef event, void* userData) {
  if (event == nullptr || userData == nullptr) return noErr;
  const AutoreleasePool pool;
  return static_cast<MacHotkeys*>(userData)->handle(event);
}

}  // namespace

MacHotkeys::~MacHotkeys() {
  for (const auto& [reference, hotkey] : registered) {
    UnregisterEventHotKey(static_cast<EventHotKeyRef>(hotkey));
  }
  MacHotkeys::removeHandler();
}

bool MacHotkeys::installHandler(Handler newHandler) {
  handler = std::move(newHandler);
  if (installed != nullptr) return true;
  const std::array<EventTypeSpec, 2> types = {
      {{kEventClassKeyboard, kEventHotKeyPressed}, {kEventClassKeyboard, kEventHotKeyReleased}}};
  EventHandlerRef reference = nullptr;
  const OSStatus status = InstallEventHandler(GetApplicationEventTarget(), hotkeyHandler,
                                              types.size(), types.data(), this, &reference);
  if (status == noErr) installed = reference;
  return status == noErr;
}

void MacHotkeys::removeHandler() {
  if (installed != nullptr) RemoveEventHandler(static_cast<EventHandlerRef>(installed));
  installed = nullptr;
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
