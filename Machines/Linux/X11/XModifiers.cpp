#include "Machines/Linux/X11/XModifiers.h"

#include <array>

#include "BrivaneCore/Seams/Keyboard.h"

namespace brivane {
namespace {

constexpr std::uint32_t command = 256;
constexpr std::uint32_t shift = 512;
constexpr std::uint32_t option = 2048;
constexpr std::uint32_t control = 4096;

struct ModifierPair {
  std::uint32_t modifier;
  std::uint16_t bits;
};

std::array<ModifierPair, 4> pairsFor(const XModifiers& meaning) {
  return {{{command, meaning.command},
           {shift, XCB_MOD_MASK_SHIFT},
           {option, meaning.option},
           {control, XCB_MOD_MASK_CONTROL}}};
}

}  // namespace

std::uint16_t xModifiers(const XModifiers& meaning, std::uint32_t modifiers) {
  unsigned state = 0;
  for (const auto& [modifier, bits] : pairsFor(meaning)) {
    if ((modifiers & modifier) != 0) state |= bits;
  }
  return static_cast<std::uint16_t>(state);
}

std::uint32_t hotkeyModifiers(const XModifiers& meaning, std::uint32_t state) {
  std::uint32_t modifiers = 0;
  for (const auto& [modifier, bits] : pairsFor(meaning)) {
    if ((state & bits) != 0) modifiers |= modifier;
  }
  return modifiers;
}

std::uint64_t modifierFlagsOf(std::uint32_t modifiers) {
  std::uint64_t flags = 0;
  if ((modifiers & command) != 0) flags |= modifierFlag::command;
  if ((modifiers & shift) != 0) flags |= modifierFlag::shift;
  if ((modifiers & option) != 0) flags |= modifierFlag::option;
  if ((modifiers & control) != 0) flags |= modifierFlag::control;
  return flags;
}

}  // namespace brivane
