#pragma once

#include "Tools/BrivaneDesk/Judge/TraceEvent.h"

namespace brivane::judge {

/// The first message of a set, when accepted, is followed by a second after this time.
inline constexpr Microseconds setWait{10'000};

/// Tells a set's two messages apart.
class SetHalves {
 public:
  enum class Half { first, second };

  Half see(Microseconds time, const BusSet& set) {
    const bool isSecond =
        hasFirst && set.display == display && set.value == value && time == firstAt + setWait;
    hasFirst = !isSecond && set.isAccepted;
    display = set.display;
    value = set.value;
    firstAt = time;
    return isSecond ? Half::second : Half::first;
  }

  /// Whether an accepted first message waits for its second.
  bool isOpen() const { return hasFirst; }
  void forget() { hasFirst = false; }

 private:
  bool hasFirst = false;
  DisplayNumber display = 0;
  std::uint16_t value = 0;
  Microseconds firstAt{0};
};

}  // namespace brivane::judge
