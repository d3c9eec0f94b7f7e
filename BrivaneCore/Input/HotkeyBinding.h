#pragma once

#include <cstdint>
#include <string>

#include "BrivaneCore/Seams/Keyboard.h"

namespace brivane {

/// One key combination that the user can press wherever they are.
struct HotkeyBinding {
  /// The bits of `modifiers`, as `Hotkeys` takes them.
  static constexpr std::uint32_t command = 256;
  static constexpr std::uint32_t shift = 512;
  static constexpr std::uint32_t option = 2048;
  static constexpr std::uint32_t control = 4096;

  /// Virtual key code, see `Keyboard`.
  std::uint32_t keyCode = 0;
  /// Other bits than the four above are carried along and shown nowhere.
  std::uint32_t modifiers = 0;

  /// As people read it: a glyph for each modifier and the key's name, "⌃⌥↑". Main thread.
  std::string displayName(Keyboard& keyboard) const;

  /// As the log has it, in ASCII: "ctrl+opt+key126".
  std::string describedKeys() const;

  /// The name of the key alone: its glyph or label where it has a fixed one, else what the layout
  /// prints on it in upper case, else "Key " and its code. Main thread. To look for a code above
  /// 65535 in a layout is a programming error and aborts.
  static std::string keyName(std::uint32_t keyCode, Keyboard& keyboard);

  bool operator==(const HotkeyBinding&) const = default;
};

}  // namespace brivane
