#pragma once

#include <memory>
#include <vector>

#include "BrivaneCore/Seams/EventTapPort.h"

namespace brivane {

/// A press or release of one of the keyboard's two brightness keys, as taps see it.
TapEvent brightnessKeyEvent(bool isUpKey, bool isDown, bool isRepeat);

/// The stream of special keys and the taps in it. Main thread.
class TapStream {
 public:
  struct Tap {
    EventTapPort::Handler handler;
    bool isEnabled = false;
  };

  /// At the head of the stream, disabled. It is in the stream until the last reference is dropped.
  std::shared_ptr<Tap> add(EventTapPort::Handler handler);

  bool hasEnabledTap();

  /// Whether the event came through all taps that are enabled.
  bool send(const TapEvent& event);

  /// The system finds all taps that are enabled too slow: they are disabled and told so.
  void disableByTimeout();

 private:
  std::vector<std::shared_ptr<Tap>> tapsFromTheHead();

  std::vector<std::weak_ptr<Tap>> taps;
};

}  // namespace brivane
