#pragma once

#include <xcb/xproto.h>

#include <optional>

#include "Machines/Linux/X11/XEvents.h"

namespace brivane {

/// Releases of all keys, whichever client receives the keys: raw events of the X Input extension.
/// Main thread.
class XRawKeyReleases {
 public:
  /// `xEvents` must outlive this.
  explicit XRawKeyReleases(XEvents& xEvents) : events(xEvents) {}

  /// Selects the events, from the server's next request on. False when the server can't.
  bool listen();
  void stopListening();

  /// The key, if the event is a raw release.
  std::optional<xcb_keycode_t> releasedKey(const xcb_generic_event_t& event);

 private:
  bool select(bool isWanted);

  XEvents& events;
  bool isListening = false;
};

}  // namespace brivane
