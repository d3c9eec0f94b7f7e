#pragma once

#include <chrono>

namespace brivane {

/// Lengths of time. Brivane's whole behaviour over time is reproducible to this unit.
using Microseconds = std::chrono::microseconds;

/// Tag of a Runtime's clock. It has no `now()`: only the Runtime knows the time.
struct RuntimeClock {
  using rep = Microseconds::rep;
  using period = Microseconds::period;
  using duration = Microseconds;
  using time_point = std::chrono::time_point<RuntimeClock>;
  static constexpr bool is_steady = true;
};

/// A moment on a Runtime's clock: monotonic, counts the time the machine sleeps, arbitrary start.
using Instant = RuntimeClock::time_point;

/// `seconds`, rounded to the nearest microsecond.
inline Microseconds fromSeconds(double seconds) {
  return std::chrono::round<Microseconds>(std::chrono::duration<double>(seconds));
}

inline double toSeconds(Microseconds duration) {
  return std::chrono::duration<double>(duration).count();
}

/// Seconds from `start` to `end`; negative when `end` is the earlier.
inline double secondsBetween(Instant start, Instant end) {
  return toSeconds(end - start);
}

}  // namespace brivane
