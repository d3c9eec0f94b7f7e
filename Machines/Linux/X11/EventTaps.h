#pragma once

#include <xcb/xproto.h>

#include <memory>
#include <set>

#include "BrivaneCore/Seams/EventTapPort.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"
#include "Machines/Common/Keys/TapStream.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XKeyReleases.h"

namespace brivane {

/// The keyboard's two brightness keys, which wait in the X server for a verdict as long as a tap is
/// enabled. When another program has them, taps are made all the same and see nothing, and one line
/// of the log says so. There are no taps without an X server.
///
/// The release of a press that passed is told when it has gone on already, whatever the verdict;
/// and only by servers with the input extension 2.1. What follows a swallowed press is swallowed
/// with it, whatever the verdicts.
class LinuxEventTaps : public EventTapPort {
 public:
  /// Both must outlive this, and this must outlive its taps.
  LinuxEventTaps(XEvents& itsEvents, SystemLog& systemLog);

  std::unique_ptr<EventTap> createTap(Handler handler) override;

  /// A key that was sent to a window of this program which has the keyboard; whether it is one of
  /// the brightness keys and a tap is enabled. It goes nowhere else, whatever the verdict.
  bool take(const WindowKey& key);
  /// No such window has the keyboard any more.
  void keyboardIsBack();

 private:
  class Tap;

  void grabOrUngrab();
  bool grab(xcb_connection_t* connection, xcb_keycode_t key);
  void handle(const xcb_generic_event_t& event);
  /// Whether it passes on.
  bool keyPressed(xcb_keycode_t key);
  void keyReleased(xcb_keycode_t key);
  void awaitRelease(xcb_keycode_t key);
  /// Whether it was awaited.
  bool awaitReleaseNoMore(xcb_keycode_t key);
  void passedKeyReleased(xcb_keycode_t key);
  void allow(std::uint8_t mode, xcb_timestamp_t time);

  XEvents& events;
  SystemLog& log;
  TapStream stream;
  bool hasGrabs = false;
  /// Keys whose press was swallowed and that have not gone up since.
  std::set<xcb_keycode_t> swallowedKeys;
  /// Keys whose press went to others, as their release will.
  std::set<xcb_keycode_t> passedKeys;
  XKeyReleases releases;
  Observation keys;
};

}  // namespace brivane
