// Maps virtual key codes, as programs see them, to usages of the HID keyboard page, as the keyboard
// sends them (USB HID usage tables, page 7).
#include "Machines/Desk/File/KeyTable.h"

#include <algorithm>
#include <array>

namespace brivane {
namespace {

constexpr HIDUsage keyboardPage = 0x7'0000'0000;

struct Place {
  std::uint16_t keyCode;
  std::uint16_t usage;
};

constexpr std::array places = {
    // Letters, A to Z
    Place{0, 0x04}, Place{11, 0x05}, Place{8, 0x06}, Place{2, 0x07}, Place{14, 0x08},
    Place{3, 0x09}, Place{5, 0x0A}, Place{4, 0x0B}, Place{34, 0x0C}, Place{38, 0x0D},
    Place{40, 0x0E}, Place{37, 0x0F}, Place{46, 0x10}, Place{45, 0x11}, Place{31, 0x12},
    Place{35, 0x13}, Place{12, 0x14}, Place{15, 0x15}, Place{1, 0x16}, Place{17, 0x17},
    Place{32, 0x18}, Place{9, 0x19}, Place{13, 0x1A}, Place{7, 0x1B}, Place{16, 0x1C},
    Place{6, 0x1D},
    // Digits, 1 to 0
    Place{18, 0x1E}, Place{19, 0x1F}, Place{20, 0x20}, Place{21, 0x21}, Place{23, 0x22},
    Place{22, 0x23}, Place{26, 0x24}, Place{28, 0x25}, Place{25, 0x26}, Place{29, 0x27},
    // Return, Escape, Backspace, Tab, Space
    Place{36, 0x28}, Place{53, 0x29}, Place{51, 0x2A}, Place{48, 0x2B}, Place{49, 0x2C},
    // The keys that a US layout labels - = [ ] \ ; ' ` , . /
    Place{27, 0x2D}, Place{24, 0x2E}, Place{33, 0x2F}, Place{30, 0x30}, Place{42, 0x31},
    Place{41, 0x33}, Place{39, 0x34}, Place{50, 0x35}, Place{43, 0x36}, Place{47, 0x37},
    Place{44, 0x38},
    // Caps Lock, F1 to F12
    Place{57, 0x39}, Place{122, 0x3A}, Place{120, 0x3B}, Place{99, 0x3C}, Place{118, 0x3D},
    Place{96, 0x3E}, Place{97, 0x3F}, Place{98, 0x40}, Place{100, 0x41}, Place{101, 0x42},
    Place{109, 0x43}, Place{103, 0x44}, Place{111, 0x45},
    // Help, Home, Page Up, Delete, End, Page Down, right, left, down, up
    Place{114, 0x49}, Place{115, 0x4A}, Place{116, 0x4B}, Place{117, 0x4C}, Place{119, 0x4D},
    Place{121, 0x4E}, Place{124, 0x4F}, Place{123, 0x50}, Place{125, 0x51}, Place{126, 0x52},
    // Keypad: Clear / * - + Enter, 1 to 0, .
    Place{71, 0x53}, Place{75, 0x54}, Place{67, 0x55}, Place{78, 0x56}, Place{69, 0x57},
    Place{76, 0x58}, Place{83, 0x59}, Place{84, 0x5A}, Place{85, 0x5B}, Place{86, 0x5C},
    Place{87, 0x5D}, Place{88, 0x5E}, Place{89, 0x5F}, Place{91, 0x60}, Place{92, 0x61},
    Place{82, 0x62}, Place{65, 0x63},
    // The key beside the left Shift of ISO keyboards, keypad =, F13 to F20
    Place{10, 0x64}, Place{81, 0x67}, Place{105, 0x68}, Place{107, 0x69}, Place{113, 0x6A},
    Place{106, 0x6B}, Place{64, 0x6C}, Place{79, 0x6D}, Place{80, 0x6E}, Place{90, 0x6F},
    // Control, Shift, Option, Command, left and right
    Place{59, 0xE0}, Place{56, 0xE1}, Place{58, 0xE2}, Place{55, 0xE3}, Place{62, 0xE4},
    Place{60, 0xE5}, Place{61, 0xE6}, Place{54, 0xE7}};

}  // namespace

std::optional<HIDUsage> usageOfKey(std::uint16_t keyCode) {
  const auto* const found = std::ranges::find(places, keyCode, &Place::keyCode);
  if (found == places.end()) return std::nullopt;
  return keyboardPage + found->usage;
}

std::optional<std::uint16_t> keyOfUsage(HIDUsage usage) {
  const auto* const found = std::ranges::find_if(
      places, [&](const Place& place) { return keyboardPage + place.usage == usage; });
  if (found == places.end()) return std::nullopt;
  return found->keyCode;
}

std::uint32_t modifierOfKey(std::uint16_t keyCode) {
  switch (keyCode) {
    case 54:
    case 55:
      return 256;
    case 56:
    case 60:
      return 512;
    case 58:
    case 61:
      return 2048;
    case 59:
    case 62:
      return 4096;
    default:
      return 0;
  }
}

std::optional<BrightnessKey> brightnessKeyOfUsage(HIDUsage usage) {
  switch (usage) {
    case 0xC'0000'006F:
    case 0xFF'0000'0004:
    case 0xFF01'0000'0020:
      return BrightnessKey::up;
    case 0xC'0000'0070:
    case 0xFF'0000'0005:
    case 0xFF01'0000'0021:
      return BrightnessKey::down;
    default:
      return std::nullopt;
  }
}

}  // namespace brivane
