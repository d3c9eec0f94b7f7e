#pragma once

#include <xcb/xproto.h>

#include <memory>
#include <set>

#include "BrivaneCore/Seams/EventTaps.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"
#include "Machines/Common/Keys/TapStream.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XRawKeyReleases.h"

namespace brivane {

/// Event taps for the two brightness keys. While a tap is enabled, a synchronous grab holds each
/// press back in the X server until the tap's verdict. When another program has grabbed the keys,
/// taps are created but receive no events, and the log says so. Without an X server no tap can be
/// created.
///
/// The release of a forwarded press is reported after its delivery, so its verdict has no effect;
/// this needs the X Input extension 2.1. Repeats and the release of a swallowed press are swallowed
/// regardless of their verdicts.
class LinuxEventTaps : public EventTaps {
 public:
  /// Both must outlive this, and this must outlive its taps.
  LinuxEventTaps(XEvents& xEvents, SystemLog& systemLog);

  std::unique_ptr<EventTap> createTap(Handler handler) override;

  /// Handles a key event of this program's window that has grabbed the keyboard. Returns whether it
  /// is a brightness key and a tap is enabled; then it is swallowed regardless of the verdict.
  bool take(const WindowKey& key);
  /// That window has released the keyboard.
  void keyboardIsBack();

 private:
  class Tap;

  void grabOrUngrab();
  bool grab(xcb_connection_t* connection, xcb_keycode_t key);
  void handle(const xcb_generic_event_t& event);
  /// Returns whether the press is to be forwarded.
  bool keyPressed(xcb_keycode_t key);
  void keyReleased(xcb_keycode_t key);
  void awaitRelease(xcb_keycode_t key);
  /// Returns whether the release was awaited.
  bool stopAwaitingRelease(xcb_keycode_t key);
  void passedKeyReleased(xcb_keycode_t key);
  void allow(std::uint8_t mode, xcb_timestamp_t time);

  XEvents& events;
  SystemLog& log;
  TapStream stream;
  bool hasGrabs = false;
  /// The server refused the last grabs.
  bool isRefused = false;
  /// Pressed keys whose press was swallowed.
  std::set<xcb_keycode_t> swallowedKeys;
  /// Pressed keys whose press was forwarded; so will be their release.
  std::set<xcb_keycode_t> passedKeys;
  XRawKeyReleases releases;
  Observation keys;
};

}  // namespace brivane
