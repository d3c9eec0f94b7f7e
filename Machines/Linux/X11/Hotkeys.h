#pragma once

#include <xcb/xproto.h>

#include <memory>
#include <set>

#include "BrivaneCore/Seams/Hotkeys.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"
#include "Machines/Common/Keys/HotkeyTable.h"
#include "Machines/Linux/X11/Keyboard.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XKeyGrabs.h"
#include "Machines/Linux/X11/XKeyboardHold.h"
#include "Machines/Linux/X11/XKeymap.h"

namespace brivane {

/// Hotkeys as grabbed keys. The statuses are X's error codes (10: the combination is taken, by this
/// program or another; 2: no such key on a PC's keyboard) and 107 without an X server.
class LinuxHotkeys : public Hotkeys {
 public:
  /// All must outlive this.
  LinuxHotkeys(XEvents& xEvents, XKeymap& xKeymap, LinuxKeyboard& xKeyboard);

  bool installHandler(Handler newHandler) override;
  void removeHandler() override;
  std::variant<HotkeyReference, HotkeyStatus> registerHotkey(std::uint32_t keyCode,
                                                             std::uint32_t modifiers,
                                                             HotkeyID hotkey) override;
  void unregisterHotkey(HotkeyReference reference) override;

  /// Handles a key event of this program's window that has grabbed the keyboard; returns whether it
  /// is a hotkey's.
  bool take(const WindowKey& key);
  /// That window has released the keyboard.
  void keyboardIsBack();

 private:
  bool isDown(KeyCombination combination);
  void ignoreUntilReleased(xcb_keycode_t key);
  void handle(const xcb_generic_event_t& event);
  void keyPressed(xcb_keycode_t key, std::uint16_t modifierBits);
  void keyReleased(xcb_keycode_t key);
  void outliveGrab();
  void releaseKeysThatAreUp();
  void release(xcb_keycode_t key);

  XEvents& events;
  XKeymap& keymap;
  LinuxKeyboard& keyboard;
  const std::shared_ptr<Handler> handler = std::make_shared<Handler>();
  HotkeyTable table;
  XKeyGrabs grabs;
  /// Held keys that were pressed as hotkeys, or became hotkeys while held.
  std::set<xcb_keycode_t> heldKeys;
  XKeyboardHold hold;
  Observation keys;
};

}  // namespace brivane
