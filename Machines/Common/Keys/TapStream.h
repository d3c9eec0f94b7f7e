#pragma once

#include <memory>
#include <vector>

#include "BrivaneCore/Seams/EventTaps.h"

namespace brivane {

/// The tap event for a press or release of a brightness key.
TapEvent brightnessKeyEvent(bool isUpKey, bool isDown, bool isRepeat);

/// The stream of special keys and the taps in it. Main thread.
class TapStream {
 public:
  struct Tap {
    EventTaps::Handler handler;
    bool isEnabled = false;
  };

  /// Adds a disabled tap at the head of the stream, until the last reference is dropped.
  std::shared_ptr<Tap> add(EventTaps::Handler handler);

  bool hasEnabledTap();

  /// Sends the event through all enabled taps; returns whether none swallowed it.
  bool send(const TapEvent& event);

  /// Disables all enabled taps as too slow, and notifies them.
  void disableByTimeout();

 private:
  std::vector<std::shared_ptr<Tap>> tapsFromTheHead();

  std::vector<std::weak_ptr<Tap>> taps;
};

}  // namespace brivane
