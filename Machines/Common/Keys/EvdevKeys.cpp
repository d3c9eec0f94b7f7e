// Maps the virtual key codes of stored bindings to the evdev codes of a PC's keys.
#include "Machines/Common/Keys/EvdevKeys.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

namespace brivane {
namespace {

struct PlacedKey {
  std::uint16_t keyCode;
  std::uint16_t evdevCode;
};

constexpr std::array placedKeys = {
    PlacedKey{0, KEY_A}, PlacedKey{11, KEY_B}, PlacedKey{8, KEY_C}, PlacedKey{2, KEY_D},
    PlacedKey{14, KEY_E}, PlacedKey{3, KEY_F}, PlacedKey{5, KEY_G}, PlacedKey{4, KEY_H},
    PlacedKey{34, KEY_I}, PlacedKey{38, KEY_J}, PlacedKey{40, KEY_K}, PlacedKey{37, KEY_L},
    PlacedKey{46, KEY_M}, PlacedKey{45, KEY_N}, PlacedKey{31, KEY_O}, PlacedKey{35, KEY_P},
    PlacedKey{12, KEY_Q}, PlacedKey{15, KEY_R}, PlacedKey{1, KEY_S}, PlacedKey{17, KEY_T},
    PlacedKey{32, KEY_U}, PlacedKey{9, KEY_V}, PlacedKey{13, KEY_W}, PlacedKey{7, KEY_X},
    PlacedKey{16, KEY_Y}, PlacedKey{6, KEY_Z}, PlacedKey{18, KEY_1}, PlacedKey{19, KEY_2},
    PlacedKey{20, KEY_3}, PlacedKey{21, KEY_4}, PlacedKey{23, KEY_5}, PlacedKey{22, KEY_6},
    PlacedKey{26, KEY_7}, PlacedKey{28, KEY_8}, PlacedKey{25, KEY_9}, PlacedKey{29, KEY_0},
    PlacedKey{36, KEY_ENTER}, PlacedKey{53, KEY_ESC}, PlacedKey{51, KEY_BACKSPACE},
    PlacedKey{48, KEY_TAB}, PlacedKey{49, KEY_SPACE}, PlacedKey{27, KEY_MINUS},
    PlacedKey{24, KEY_EQUAL}, PlacedKey{33, KEY_LEFTBRACE}, PlacedKey{30, KEY_RIGHTBRACE},
    PlacedKey{42, KEY_BACKSLASH}, PlacedKey{41, KEY_SEMICOLON}, PlacedKey{39, KEY_APOSTROPHE},
    PlacedKey{50, KEY_GRAVE}, PlacedKey{43, KEY_COMMA}, PlacedKey{47, KEY_DOT},
    PlacedKey{44, KEY_SLASH}, PlacedKey{122, KEY_F1}, PlacedKey{120, KEY_F2}, PlacedKey{99, KEY_F3},
    PlacedKey{118, KEY_F4}, PlacedKey{96, KEY_F5}, PlacedKey{97, KEY_F6}, PlacedKey{98, KEY_F7},
    PlacedKey{100, KEY_F8}, PlacedKey{101, KEY_F9}, PlacedKey{109, KEY_F10},
    PlacedKey{103, KEY_F11}, PlacedKey{111, KEY_F12},
    // A Mac's Help is a PC's Insert.
    PlacedKey{114, KEY_INSERT}, PlacedKey{115, KEY_HOME}, PlacedKey{116, KEY_PAGEUP},
    PlacedKey{117, KEY_DELETE}, PlacedKey{119, KEY_END}, PlacedKey{121, KEY_PAGEDOWN},
    PlacedKey{124, KEY_RIGHT}, PlacedKey{123, KEY_LEFT}, PlacedKey{125, KEY_DOWN},
    PlacedKey{126, KEY_UP},
    // The keypad; a Mac's Clear is a PC's Num Lock.
    PlacedKey{71, KEY_NUMLOCK}, PlacedKey{75, KEY_KPSLASH}, PlacedKey{67, KEY_KPASTERISK},
    PlacedKey{78, KEY_KPMINUS}, PlacedKey{69, KEY_KPPLUS}, PlacedKey{76, KEY_KPENTER},
    PlacedKey{83, KEY_KP1}, PlacedKey{84, KEY_KP2}, PlacedKey{85, KEY_KP3}, PlacedKey{86, KEY_KP4},
    PlacedKey{87, KEY_KP5}, PlacedKey{88, KEY_KP6}, PlacedKey{89, KEY_KP7}, PlacedKey{91, KEY_KP8},
    PlacedKey{92, KEY_KP9}, PlacedKey{82, KEY_KP0}, PlacedKey{65, KEY_KPDOT},
    PlacedKey{81, KEY_KPEQUAL},
    // The key beside the left Shift that only European keyboards have, and those of Japanese ones.
    PlacedKey{10, KEY_102ND}, PlacedKey{93, KEY_YEN}, PlacedKey{94, KEY_RO},
    PlacedKey{95, KEY_KPJPCOMMA}, PlacedKey{110, KEY_COMPOSE}, PlacedKey{57, KEY_CAPSLOCK},
    PlacedKey{105, KEY_F13}, PlacedKey{107, KEY_F14}, PlacedKey{113, KEY_F15},
    PlacedKey{106, KEY_F16}, PlacedKey{64, KEY_F17}, PlacedKey{79, KEY_F18}, PlacedKey{80, KEY_F19},
    PlacedKey{90, KEY_F24},
    // Control, Shift, Option, Command, left and right
    PlacedKey{59, KEY_LEFTCTRL}, PlacedKey{56, KEY_LEFTSHIFT}, PlacedKey{58, KEY_LEFTALT},
    PlacedKey{55, KEY_LEFTMETA}, PlacedKey{62, KEY_RIGHTCTRL}, PlacedKey{60, KEY_RIGHTSHIFT},
    PlacedKey{61, KEY_RIGHTALT}, PlacedKey{54, KEY_RIGHTMETA}};

}  // namespace

std::optional<std::uint16_t> evdevCodeOfKey(std::uint32_t keyCode) {
  const auto* const found = std::ranges::find(placedKeys, keyCode, &PlacedKey::keyCode);
  if (found == placedKeys.end()) return std::nullopt;
  return found->evdevCode;
}

std::optional<std::uint16_t> keyOfEvdevCode(std::uint32_t evdevCode) {
  const auto* const found = std::ranges::find(placedKeys, evdevCode, &PlacedKey::evdevCode);
  if (found == placedKeys.end()) return std::nullopt;
  return found->keyCode;
}

}  // namespace brivane
