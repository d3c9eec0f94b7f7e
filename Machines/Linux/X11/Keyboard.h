#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "BrivaneCore/Seams/Keyboard.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XKeymap.h"

namespace brivane {

/// The X server's keyboard. Without a server there is no layout and no key is down.
class LinuxKeyboard : public Keyboard {
 public:
  /// Both must outlive this.
  LinuxKeyboard(XEvents& xEvents, XKeymap& xKeymap) : events(xEvents), keymap(xKeymap) {}

  bool hasLayout() override;
  std::optional<std::string> baseCharacter(std::uint16_t keyCode) override;
  std::uint64_t modifierFlags() override;
  bool isKeyDown(std::uint16_t keyCode) override;

  /// The modifiers that are down, as hotkey modifier bits.
  std::uint32_t heldModifiers();

 private:
  XEvents& events;
  XKeymap& keymap;
};

}  // namespace brivane
