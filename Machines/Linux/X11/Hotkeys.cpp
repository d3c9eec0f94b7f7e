// From a grabbed key's press to its release, the server sends all keys to this program. When a
// second hotkey is still held after that, its release would never arrive, and it would count as
// held for ever. So the whole keyboard is grabbed then, until all hotkeys are released.
//
// An open menu of this program grabs the keyboard, too, which suspends the grabs of keys. The
// menu's key events come here by `take`.
//
// A grab is for an exact set of modifiers, so each hotkey is grabbed with every combination of Caps
// Lock and Num Lock.
#include "Machines/Linux/X11/Hotkeys.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Linux/X11/XConnection.h"

namespace brivane {
namespace {

constexpr HotkeyStatus noServer = ENOTCONN;
constexpr HotkeyStatus noSuchKey = XCB_VALUE;
constexpr HotkeyStatus taken = XCB_ACCESS;
constexpr std::uint32_t everyModifier = 256 | 512 | 2048 | 4096;

std::array<std::uint16_t, 4> lockVariants(const XModifiers& meaning) {
  const auto both = static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | meaning.numLock);
  return {0, XCB_MOD_MASK_LOCK, meaning.numLock, both};
}

}  // namespace

LinuxHotkeys::LinuxHotkeys(XEvents& xEvents, XKeymap& xKeymap, LinuxKeyboard& xKeyboard)
    : events(xEvents),
      keymap(xKeymap),
      keyboard(xKeyboard),
      keys(events.observe([this](const xcb_generic_event_t& event) { handle(event); })),
      layout(keymap.observeChanges([this] { followLayout(); })) {}

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
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return noServer;
  const auto receive = [handler = handler, hotkey](HotkeyEvent event) {
    // Copied: the handler may remove itself.
    const Handler current = *handler;
    if (current) current(event, hotkey);
  };
  const KeyCombination combination{keyCode, modifiers & everyModifier};
  const auto added = table.add(combination, receive);
  const auto* const reference = std::get_if<HotkeyReference>(&added);
  if (reference == nullptr) return taken;
  const XModifiers meaning = keymap.modifiers();
  const GrabbedKey grabbed{static_cast<xcb_keycode_t>(*evdevCode + firstXKeyCode), meaning,
                           xModifiers(meaning, modifiers)};
  if (const HotkeyStatus status = grab(connection, grabbed); status != 0) {
    ungrab(grabbed);
    table.remove(*reference);
    return status;
  }
  grabs.emplace(*reference, grabbed);
  if (isDown(combination)) ignoreUntilReleased(grabbed.key);
  return *reference;
}

void LinuxHotkeys::unregisterHotkey(HotkeyReference reference) {
  const auto found = grabs.find(reference);
  if (found == grabs.end()) return;
  ungrab(found->second);
  table.retire(reference);
  grabs.erase(found);
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

/// Returns 0 or the last error's code.
HotkeyStatus LinuxHotkeys::grab(xcb_connection_t* connection, const GrabbedKey& grabbed) {
  const auto locks = lockVariants(grabbed.meaning);
  std::array<xcb_void_cookie_t, locks.size()> requests{};
  std::ranges::transform(locks, requests.begin(), [&](std::uint16_t lock) {
    const auto modifiers = static_cast<std::uint16_t>(grabbed.modifiers | lock);
    return xcb_grab_key_checked(connection, 0, events.root(), modifiers, grabbed.key,
                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  });
  HotkeyStatus status = 0;
  for (const xcb_void_cookie_t request : requests) {
    const XReply<xcb_generic_error_t> error(xcb_request_check(connection, request));
    if (error) status = error->error_code;
  }
  return xcb_connection_has_error(connection) == 0 ? status : noServer;
}

void LinuxHotkeys::ungrab(const GrabbedKey& grabbed) {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  for (const std::uint16_t lock : lockVariants(grabbed.meaning)) {
    const auto modifiers = static_cast<std::uint16_t>(grabbed.modifiers | lock);
    xcb_ungrab_key(connection, grabbed.key, events.root(), modifiers);
  }
  xcb_flush(connection);
}

/// Grabs the combinations again with the layout's current modifier bits. One that another program
/// has grabbed stays without effect.
void LinuxHotkeys::followLayout() {
  const XModifiers meaning = keymap.modifiers();
  xcb_connection_t* const connection = events.connection();
  const auto differs = [&](const auto& entry) { return entry.second.meaning != meaning; };
  if (connection == nullptr || std::ranges::none_of(grabs, differs)) return;
  // First ungrab all: one's new bits may be another's old ones.
  for (const auto& [reference, grabbed] : grabs) ungrab(grabbed);
  for (auto& [reference, grabbed] : grabs) {
    grabbed.modifiers = xModifiers(meaning, hotkeyModifiers(grabbed.meaning, grabbed.modifiers));
    grabbed.meaning = meaning;
    grab(connection, grabbed);
  }
}

void LinuxHotkeys::handle(const xcb_generic_event_t& event) {
  const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
  if (event.response_type == XCB_KEY_PRESS) keyPressed(key.detail, key.state);
  if (event.response_type == XCB_KEY_RELEASE) keyReleased(key.detail);
  // A key reported by a hold that has ended since won't be followed by its release.
  const bool isOfEarlierHold = event.full_sequence < endOfHold;
  if (event.response_type == XCB_KEY_RELEASE || isOfEarlierHold) outliveGrab();
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
  if (!heldKeys.empty()) holdKeyboard();
  if (heldKeys.empty() && std::exchange(holdsKeyboard, false)) {
    if (auto* const connection = events.connection()) {
      endOfHold = xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME).sequence;
      xcb_flush(connection);
    }
  }
}

/// Grabs the whole keyboard and releases keys that are up already. When another program has the
/// keyboard, all held keys count as released.
void LinuxHotkeys::holdKeyboard() {
  if (holdsKeyboard) return;
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  const auto question = xcb_grab_keyboard(connection, 0, events.root(), XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const XReply<xcb_grab_keyboard_reply_t> reply(
      xcb_grab_keyboard_reply(connection, question, nullptr));
  holdsKeyboard = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
  for (const xcb_keycode_t key : std::set(heldKeys)) {
    const auto keyCode = keyOfEvdevCode(key - firstXKeyCode);
    if (!holdsKeyboard || !keyCode || !keyboard.isKeyDown(*keyCode)) release(key);
  }
}

void LinuxHotkeys::release(xcb_keycode_t key) {
  heldKeys.erase(key);
  if (const auto keyCode = keyOfEvdevCode(key - firstXKeyCode)) table.releaseKey(*keyCode);
}

}  // namespace brivane
