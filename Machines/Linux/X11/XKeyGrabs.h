#pragma once

#include <xcb/xproto.h>

#include <map>

#include "BrivaneCore/Seams/Hotkeys.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XKeymap.h"

namespace brivane {

/// The keys of hotkeys, grabbed whatever the state of Caps Lock and Num Lock. The grabs follow the
/// layout's modifier bits. Main thread.
class XKeyGrabs {
 public:
  /// Both must outlive this.
  XKeyGrabs(XEvents& xEvents, XKeymap& xKeymap);

  /// Returns 0, X's error code, or 107 without an X server. After an error nothing is grabbed.
  HotkeyStatus grab(HotkeyReference hotkey, xcb_keycode_t key, std::uint32_t modifiers);
  void ungrab(HotkeyReference hotkey);

 private:
  struct Grab {
    xcb_keycode_t key = 0;
    XModifiers meaning;
    std::uint16_t modifiers = 0;
  };

  HotkeyStatus request(const Grab& grab);
  void end(const Grab& grab);
  void followLayout();

  XEvents& events;
  XKeymap& keymap;
  std::map<HotkeyReference, Grab> grabs;
  Observation layout;
};

}  // namespace brivane
