#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace brivane {

/// The modifier flags of key events; other bits may be set as well.
namespace modifierFlag {
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
}  // namespace modifierFlag

/// The keyboard's layout and the keys that are down now. Main thread; no call blocks. Keys are
/// named by virtual key codes: the position of a key, whatever the layout prints on it (0 is the
/// key that a US layout labels A, 126 the up arrow).
class Keyboard {
 public:
  virtual ~Keyboard() = default;

  /// Whether there is a current layout, with the data that say what its keys give.
  virtual bool hasLayout() = 0;

  /// The text that the key gives in the current layout when pressed alone; nothing without a
  /// layout, and for keys that give none.
  virtual std::optional<std::string> baseCharacter(std::uint16_t keyCode) = 0;

  /// Which modifiers are down (see `modifierFlag`).
  virtual std::uint64_t modifierFlags() = 0;

  /// Whether the key is down, as far as the whole session's input knows. A key that the HID mapping
  /// replaces counts under the code that it was replaced by.
  virtual bool isKeyDown(std::uint16_t keyCode) = 0;
};

}  // namespace brivane
