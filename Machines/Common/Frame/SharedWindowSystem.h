#pragma once

#include <cstdint>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"

namespace brivane {

/// A key that an X server sent to one of the frame's windows.
struct WindowKey {
  bool isPress = false;
  /// evdev's code plus 8.
  std::uint8_t keyCode = 0;
  /// X's modifier bits, as they were just before.
  std::uint16_t modifiers = 0;
};

/// The X server as machine and frame share it. An open menu has the whole keyboard to itself, so
/// what the machine listens for arrives at the menu alone. Main thread.
class SharedWindowSystem {
 public:
  virtual ~SharedWindowSystem() = default;

  /// To be told every key of a window that has the keyboard to itself. True when the machine has a
  /// use for it (a hotkey, a brightness key): then it is nothing to the window.
  virtual bool take(const WindowKey& key) = 0;

  /// The window has given the keyboard back, maybe with keys still down.
  virtual void keyboardIsBack() = 0;

  /// The handler is called as a main-queue task once the machine's own connection has broken.
  virtual Observation observeServerGone(Task handler) = 0;

  /// Says in one line, in the log and on standard error, that the program ends because the server
  /// has gone.
  virtual void sayThatServerHasGone() = 0;

  /// The process ends without the machine's end: what must outlive a power cut goes to disk now.
  virtual void saveBeforeExit() = 0;
};

}  // namespace brivane
