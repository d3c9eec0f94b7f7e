#pragma once

#include <xcb/xproto.h>

namespace brivane {

/// X's key codes, which are evdev's plus 8, on a keyboard of the United States.
namespace xKey {
inline constexpr xcb_keycode_t escape = 9;
inline constexpr xcb_keycode_t tab = 23;
inline constexpr xcb_keycode_t q = 24;
inline constexpr xcb_keycode_t enter = 36;
inline constexpr xcb_keycode_t control = 37;
inline constexpr xcb_keycode_t a = 38;
inline constexpr xcb_keycode_t shift = 50;
inline constexpr xcb_keycode_t rightShift = 62;
inline constexpr xcb_keycode_t option = 64;
inline constexpr xcb_keycode_t space = 65;
inline constexpr xcb_keycode_t capsLock = 66;
inline constexpr xcb_keycode_t f5 = 71;
inline constexpr xcb_keycode_t numLock = 77;
inline constexpr xcb_keycode_t f12 = 96;
inline constexpr xcb_keycode_t up = 111;
inline constexpr xcb_keycode_t left = 113;
inline constexpr xcb_keycode_t right = 114;
inline constexpr xcb_keycode_t down = 116;
inline constexpr xcb_keycode_t f18 = 196;
inline constexpr xcb_keycode_t f19 = 197;
inline constexpr xcb_keycode_t f24 = 202;
inline constexpr xcb_keycode_t brightnessDown = 232;
inline constexpr xcb_keycode_t brightnessUp = 233;
}  // namespace xKey

}  // namespace brivane
