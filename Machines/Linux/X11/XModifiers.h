#pragma once

#include <xcb/xproto.h>

#include <cstdint>

namespace brivane {

/// The meaning of X's modifier bits. Shift, Lock and Control are fixed; the others depend on the
/// keyboard layout and have these conventional values.
struct XModifiers {
  std::uint16_t option = XCB_MOD_MASK_1;
  std::uint16_t command = XCB_MOD_MASK_4;
  std::uint16_t numLock = XCB_MOD_MASK_2;

  bool operator==(const XModifiers&) const = default;
};

/// Converts hotkey modifier bits (256 command, 512 shift, 2048 option, 4096 control) to X's and
/// back; other bits are dropped.
std::uint16_t xModifiers(const XModifiers& meaning, std::uint32_t modifiers);
std::uint32_t hotkeyModifiers(const XModifiers& meaning, std::uint32_t state);

/// The hotkey modifiers as flags of key events, see `modifierFlag`.
std::uint64_t modifierFlagsOf(std::uint32_t modifiers);

}  // namespace brivane
