#include "Machines/Linux/X11/Keyboard.h"

#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Linux/X11/XConnection.h"

namespace brivane {
namespace {

std::optional<xcb_keycode_t> xKeyOf(std::uint16_t keyCode) {
  const auto evdevCode = evdevCodeOfKey(keyCode);
  if (!evdevCode) return std::nullopt;
  return static_cast<xcb_keycode_t>(*evdevCode + firstXKeyCode);
}

}  // namespace

bool LinuxKeyboard::hasLayout() {
  return keymap.exists();
}

std::optional<std::string> LinuxKeyboard::baseCharacter(std::uint16_t keyCode) {
  const auto key = xKeyOf(keyCode);
  return key ? keymap.textOf(*key) : std::nullopt;
}

std::uint64_t LinuxKeyboard::modifierFlags() {
  return modifierFlagsOf(heldModifiers());
}

std::uint32_t LinuxKeyboard::heldModifiers() {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return 0;
  const auto question = xcb_query_pointer(connection, events.root());
  const XReply<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(connection, question, nullptr));
  return pointer ? hotkeyModifiers(keymap.modifiers(), pointer->mask) : 0;
}

bool LinuxKeyboard::isKeyDown(std::uint16_t keyCode) {
  xcb_connection_t* const connection = events.connection();
  const auto key = xKeyOf(keyCode);
  if (connection == nullptr || !key) return false;
  const XReply<xcb_query_keymap_reply_t> down(
      xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
  constexpr unsigned bitsPerByte = 8;
  return down && (down->keys[*key / bitsPerByte] >> *key % bitsPerByte & 1) != 0;
}

}  // namespace brivane
