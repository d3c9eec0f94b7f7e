// When a grabbed key goes down, the server sends everything that is typed to this program until the
// same key goes up again. Then it stops, even when the key of another hotkey is still down, whose
// release would never arrive: a user who rolls from one key to the next would find the second one
// held for ever. So while hotkeys are held beyond that moment, the whole keyboard is.
//
// A menu of this program holds the keyboard, too, and no grab of a key counts meanwhile. The keys
// that the menu is sent come here by `take`.
//
// A grab wants its modifiers exactly, Caps Lock and Num Lock among them, which no user means.
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

LinuxHotkeys::LinuxHotkeys(XEvents& itsEvents, XKeymap& itsKeymap, LinuxKeyboard& itsKeyboard)
    : events(itsEvents),
      keymap(itsKeymap),
      keyboard(itsKeyboard),
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
    // It may remove itself.
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

/// A repeat sets a grab off as a press does. Of a key that is down before it is grabbed (it was
/// just typed into the editor, say), no repeat is a press.
void LinuxHotkeys::ignoreUntilReleased(xcb_keycode_t key) {
  if (heldKeys.insert(key).second) outliveGrab();
}

/// 0, or the code of the last error.
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

/// Takes the combinations with the bits that their modifiers have now. One that another program has
/// with those stays silent.
void LinuxHotkeys::followLayout() {
  const XModifiers meaning = keymap.modifiers();
  xcb_connection_t* const connection = events.connection();
  const auto differs = [&](const auto& entry) { return entry.second.meaning != meaning; };
  if (connection == nullptr || std::ranges::none_of(grabs, differs)) return;
  // All of them first: the bits of one may be another's now.
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
  // What was sent because of a hold that has ended since is not followed by its release.
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

/// The grab that told of the held keys may have ended: the whole keyboard is held until they are
/// up.
void LinuxHotkeys::outliveGrab() {
  if (!heldKeys.empty()) holdKeyboard();
  if (heldKeys.empty() && std::exchange(holdsKeyboard, false)) {
    if (auto* const connection = events.connection()) {
      endOfHold = xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME).sequence;
      xcb_flush(connection);
    }
  }
}

/// Has every key sent here, and looks which went up just before. What another program keeps from
/// being sent counts as up.
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
