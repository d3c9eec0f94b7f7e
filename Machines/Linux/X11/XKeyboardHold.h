#pragma once

#include <cstdint>

#include "Machines/Linux/X11/XEvents.h"

namespace brivane {

/// A grab of the whole keyboard. Main thread.
class XKeyboardHold {
 public:
  /// `xEvents` must outlive this.
  explicit XKeyboardHold(XEvents& xEvents) : events(xEvents) {}

  bool isActive() const { return isGrabbed; }
  /// Fails while another program has the keyboard.
  void begin();
  void end();

  /// Whether the event is older than the last hold's end.
  bool hasEndedSince(const xcb_generic_event_t& event) const {
    return event.full_sequence < endRequest;
  }

 private:
  XEvents& events;
  bool isGrabbed = false;
  /// A sequence number; earlier events have smaller ones.
  std::uint32_t endRequest = 0;
};

}  // namespace brivane
