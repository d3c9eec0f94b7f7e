#pragma once

#include <xcb/xproto.h>

#include <optional>

#include "Machines/Linux/X11/XEvents.h"

namespace brivane {

/// Key releases of the whole keyboard, whoever the keys are for: raw events of the input extension,
/// which the server tells everybody who listens. Main thread.
class XKeyReleases {
 public:
  /// `itsEvents` must outlive this.
  explicit XKeyReleases(XEvents& itsEvents) : events(itsEvents) {}

  /// From the server's next step on the releases are among the events. False when the server can't.
  bool listen();
  void stopListening();

  /// The key, when the event is such a release.
  std::optional<xcb_keycode_t> releasedKey(const xcb_generic_event_t& event);

 private:
  bool select(bool isWanted);

  XEvents& events;
  bool isListening = false;
};

}  // namespace brivane
