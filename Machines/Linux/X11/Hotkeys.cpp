// From a grabbed key's press to its release, the server sends all keys to this program. When a
// second hotkey is still held after that, its release would never arrive, and it would count as
// held for ever. So the whole keyboard is grabbed then, until all hotkeys are released.
//
// An open menu of this program grabs the keyboard, too, which suspends the grabs of keys. The
// menu's key events come here by `take`.
#include "Machines/Linux/X11/Hotkeys.h"

#include <cerrno>
#include <utility>

#include "Machines/Common/Keys/EvdevKeys.h"

namespace brivane {
namespace {

constexpr HotkeyStatus noServer = ENOTCONN;
constexpr HotkeyStatus noSuchKey = XCB_VALUE;
constexpr HotkeyStatus taken = XCB_ACCESS;
constexpr std::uint32_t everyModifier = 256 | 512 | 2048 | 4096;

}  // namespace

LinuxHotkeys::LinuxHotkeys(XEvents& xEvents, XKeymap& xKeymap, LinuxKeyboard& xKeyboard)
    : events(xEvents),
      keymap(xKeymap),
      keyboard(xKeyboard),
      grabs(events, keymap),
      hold(events),
      keys(events.observe([this](const xcb_generic_event_t& event) { handle(event); })) {}

bool LinuxHotkeys::installHandler(Handler newHandler) {
  *handler = std::move(newHandler);
  return true;
}

void LinuxHotkeys::removeHandler() {
  *handler = nullptr;
}

std::variant<HotkeyReference, HotkeyStatus> LinuxHotkeys::registerHotkey(std::uint32_t keyCode,
                                                                         std::uint32_t modifiers,
                                                                         HotkeyID hotkey) {
  const auto evdevCode = evdevCodeOfKey(keyCode);
  if (!evdevCode) return noSuchKey;
  if (events.connection() == nullptr) return noServer;
  const auto receive = [handler = handler, hotkey](HotkeyEvent event) {
    // Copied: the handler may remove itself.
    const Handler current = *handler;
    if (current) current(event, hotkey);
  };
  const KeyCombination combination{keyCode, modifiers & everyModifier};
  const auto added = table.add(combination, receive);
  const auto* const reference = std::get_if<HotkeyReference>(&added);
  if (reference == nullptr) return taken;
  const auto key = static_cast<xcb_keycode_t>(*evdevCode + firstXKeyCode);
  if (const HotkeyStatus status = grabs.grab(*reference, key, modifiers); status != 0) {
    table.remove(*reference);
    return status;
  }
  if (isDown(combination)) ignoreUntilReleased(key);
  return *reference;
}

void LinuxHotkeys::unregisterHotkey(HotkeyReference reference) {
  grabs.ungrab(reference);
  table.retire(reference);
}

bool LinuxHotkeys::isDown(KeyCombination combination) {
  return keyboard.isKeyDown(static_cast<std::uint16_t>(combination.keyCode)) &&
         keyboard.heldModifiers() == combination.modifiers;
}

/// A grab reports repeats as presses. Those of a key that was down before the grab (just typed into
/// the editor, say) are ignored.
void LinuxHotkeys::ignoreUntilReleased(xcb_keycode_t key) {
  if (heldKeys.insert(key).second) outliveGrab();
}

void LinuxHotkeys::handle(const xcb_generic_event_t& event) {
  const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
  if (event.response_type == XCB_KEY_PRESS) keyPressed(key.detail, key.state);
  if (event.response_type == XCB_KEY_RELEASE) keyReleased(key.detail);
  // A key reported by a hold that has ended since won't be followed by its release.
  if (event.response_type == XCB_KEY_RELEASE || hold.hasEndedSince(event)) outliveGrab();
}

bool LinuxHotkeys::take(const WindowKey& key) {
  const bool wasHeld = heldKeys.contains(key.keyCode);
  if (key.isPress) {
    keyPressed(key.keyCode, key.modifiers);
  } else {
    keyReleased(key.keyCode);
  }
  return wasHeld || heldKeys.contains(key.keyCode);
}

void LinuxHotkeys::keyboardIsBack() {
  if (!heldKeys.empty()) table.keepModifiers(keyboard.heldModifiers());
  outliveGrab();
}

void LinuxHotkeys::keyPressed(xcb_keycode_t key, std::uint16_t modifierBits) {
  const auto keyCode = keyOfEvdevCode(key - firstXKeyCode);
  const bool isRepeat = heldKeys.contains(key);
  if (!keyCode || isRepeat) return;
  heldKeys.insert(key);
  const auto modifiers = hotkeyModifiers(keymap.modifiers(), modifierBits);
  if (!table.press({*keyCode, modifiers})) heldKeys.erase(key);
}

void LinuxHotkeys::keyReleased(xcb_keycode_t key) {
  if (heldKeys.contains(key)) release(key);
  if (!heldKeys.empty()) table.keepModifiers(keyboard.heldModifiers());
}

/// The held keys' grab may have ended: grabs the whole keyboard until they are released.
void LinuxHotkeys::outliveGrab() {
  if (!heldKeys.empty() && !hold.isActive() && events.connection() != nullptr) {
    hold.begin();
    releaseKeysThatAreUp();
  }
  if (heldKeys.empty()) hold.end();
}

/// When another program has the keyboard, all held keys count as released.
void LinuxHotkeys::releaseKeysThatAreUp() {
  for (const xcb_keycode_t key : std::set(heldKeys)) {
    const auto keyCode = keyOfEvdevCode(key - firstXKeyCode);
    if (!hold.isActive() || !keyCode || !keyboard.isKeyDown(*keyCode)) release(key);
  }
}

void LinuxHotkeys::release(xcb_keycode_t key) {
  heldKeys.erase(key);
  if (const auto keyCode = keyOfEvdevCode(key - firstXKeyCode)) table.releaseKey(*keyCode);
}

}  // namespace brivane
