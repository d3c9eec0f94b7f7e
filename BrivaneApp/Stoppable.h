#pragma once

namespace brivane {

/// A long-lived object with timers or subscriptions of its own. Main thread.
class Stoppable {
 public:
  virtual ~Stoppable() = default;

  /// Ends the timers. May be called again; the object may be used and destroyed afterwards.
  virtual void stop() = 0;
};

}  // namespace brivane
