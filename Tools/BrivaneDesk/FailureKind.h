#pragma once

namespace brivane {

/// What kind of failure ended a day; what is worse comes later.
enum class FailureKind {
  /// An expectation did not hold, a step could not be done, or the day played again gave another
  /// transcript.
  step,
  /// The judge found a display that was never resolved.
  liveness,
  /// The judge found another rule broken.
  rule,
  hang,
  crash
};

}  // namespace brivane
