#pragma once

#include <cstdint>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"

namespace brivane {

/// A key event that the X server sent to one of the frame's windows.
struct WindowKey {
  bool isPress = false;
  /// The evdev code plus 8.
  std::uint8_t keyCode = 0;
  /// X's modifier bits just before the event.
  std::uint16_t modifiers = 0;
};

/// The X server, shared by machine and frame. An open menu grabs the whole keyboard, so key events
/// for the machine arrive at the menu only. Main thread.
class SharedWindowSystem {
 public:
  virtual ~SharedWindowSystem() = default;

  /// To be called for every key event of a window that has grabbed the keyboard. True when the
  /// machine has used the event (a hotkey, a brightness key): then the window must ignore it.
  virtual bool take(const WindowKey& key) = 0;

  /// The window has released the keyboard, maybe with keys still down.
  virtual void keyboardIsBack() = 0;

  /// The handler is called as a main-queue task once the machine's connection has broken.
  virtual Observation observeServerGone(Task handler) = 0;

  /// Logs in one line, on standard error, too, that the program ends because the server is lost.
  virtual void logLostServer() = 0;

  /// For an end of the process without the machine's destructor: syncs the settings to disk.
  virtual void saveBeforeExit() = 0;
};

}  // namespace brivane
