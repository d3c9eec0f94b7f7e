// The two text forms of a key combination. Both name the modifiers in the order in which menus show
// them (control, option, shift, command), which is not the order of their bits.

#include "BrivaneCore/Input/HotkeyBinding.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "BrivaneCore/Input/VirtualKeyCode.h"
#include "BrivaneCore/Support/UpperCase.h"

namespace brivane {
namespace {

struct ModifierName {
  std::uint32_t bit;
  std::string_view glyph;
  std::string_view word;
};

constexpr std::array<ModifierName, 4> modifierNames = {{
    {HotkeyBinding::control, "⌃", "ctrl"},
    {HotkeyBinding::option, "⌥", "opt"},
    {HotkeyBinding::shift, "⇧", "shift"},
    {HotkeyBinding::command, "⌘", "cmd"},
}};

struct FixedKeyName {
  std::uint32_t keyCode;
  std::string_view name;
};

constexpr std::array<FixedKeyName, 25> fixedKeyNames = {{
    {126, "↑"},  {125, "↓"},   {123, "←"},   {124, "→"},   {49, "Space"}, {36, "↩"},  {48, "⇥"},
    {51, "⌫"},   {53, "⎋"},    {115, "↖"},   {119, "↘"},   {116, "⇞"},    {121, "⇟"}, {122, "F1"},
    {120, "F2"}, {99, "F3"},   {118, "F4"},  {96, "F5"},   {97, "F6"},    {98, "F7"}, {100, "F8"},
    {101, "F9"}, {109, "F10"}, {103, "F11"}, {111, "F12"},
}};

}  // namespace

std::string HotkeyBinding::displayName(Keyboard& keyboard) const {
  std::string name;
  for (const ModifierName& modifier : modifierNames) {
    if ((modifiers & modifier.bit) != 0) name += modifier.glyph;
  }
  return name + keyName(keyCode, keyboard);
}

std::string HotkeyBinding::describedKeys() const {
  std::string keys;
  for (const ModifierName& modifier : modifierNames) {
    if ((modifiers & modifier.bit) != 0) keys.append(modifier.word).append("+");
  }
  return keys + "key" + std::to_string(keyCode);
}

std::string HotkeyBinding::keyName(std::uint32_t keyCode, Keyboard& keyboard) {
  const auto fixed = std::ranges::find(fixedKeyNames, keyCode, &FixedKeyName::keyCode);
  if (fixed != fixedKeyNames.end()) return std::string(fixed->name);
  if (keyboard.hasLayout()) {
    const auto character = keyboard.baseCharacter(keyboardKeyCode(keyCode));
    if (character && !character->empty()) return upperCased(*character);
  }
  return "Key " + std::to_string(keyCode);
}

}  // namespace brivane
