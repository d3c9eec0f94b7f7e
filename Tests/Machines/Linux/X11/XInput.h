#pragma once

#include <gtest/gtest.h>

#include "Machines/Common/ThreadRuntime.h"
#include "Machines/Linux/Keyboard.h"
#include "Machines/Linux/XEvents.h"
#include "Machines/Linux/XKeymap.h"
#include "Tests/Support/X11Rig.h"

namespace brivane {

// X's key codes are evdev's plus 8.
namespace xKey {
inline constexpr xcb_keycode_t a = 38;
inline constexpr xcb_keycode_t capsLock = 66;
inline constexpr xcb_keycode_t numLock = 77;
inline constexpr xcb_keycode_t leftShift = 50;
inline constexpr xcb_keycode_t rightShift = 62;
inline constexpr xcb_keycode_t leftAlt = 64;
inline constexpr xcb_keycode_t f18 = 196;
inline constexpr xcb_keycode_t f19 = 197;
inline constexpr xcb_keycode_t f24 = 202;
inline constexpr xcb_keycode_t brightnessDown = 232;
inline constexpr xcb_keycode_t brightnessUp = 233;
}  // namespace xKey

/// A real X server with a PC's keyboard, and the program's connection for its events.
class XInputTest : public testing::Test {
 protected:
  XInputTest() { rig.useEvdevKeymap(); }

  /// Runs main-queue tasks until the server has told everything that happened so far.
  void settle(Microseconds duration = std::chrono::milliseconds(30)) {
    runtime.after(duration, [this] { runtime.stop(); });
    runtime.run();
  }

  void tap(xcb_keycode_t key) {
    rig.pressKey(key);
    settle();
    rig.releaseKey(key);
    settle();
  }

  X11Rig rig;
  ThreadRuntime runtime;
  XEvents events{rig.display(), runtime};
  XKeymap keymap{events};
  LinuxKeyboard keyboard{events, keymap};
};

}  // namespace brivane
