#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// A level in whole percent. A hardware level is 0 to 100 of the display's own range. On the joint
/// scale, -100 to -1 is hardware 0 with software dimming of that depth, 0 to 100 is the hardware
/// level alone, and 101 to 200 is hardware 100 with software brightening by the level minus 100.
using Percent = std::int64_t;

/// The size of one key step, in percentage points.
inline constexpr Percent brightnessStep = 5;

enum class BrightnessDirection { up, down };

/// The signed change of one key step.
constexpr Percent delta(BrightnessDirection direction) {
  return direction == BrightnessDirection::up ? brightnessStep : -brightnessStep;
}

/// One change that a key asks for.
struct Adjustment {
  /// The signed change in percentage points.
  Percent delta = 0;
  /// Move to the next multiple of the step in the direction of `delta` instead of adding it.
  bool snapToStep = false;

  bool operator==(const Adjustment&) const = default;
};

/// The outcome of one key-driven adjustment.
struct AdjustOutcome {
  enum class Kind {
    /// Done, or already at a bound; show `level`.
    handled,
    /// The display speaks DDC/CI but its level is not known yet; a read is under way.
    connecting,
    /// Not for Brivane; the operating system may have the key.
    passThrough,
  };

  static AdjustOutcome handled(DisplayID display, std::string name, Percent level);
  static AdjustOutcome connecting(DisplayID display, std::string name);
  static AdjustOutcome passThrough();

  Kind kind = Kind::passThrough;
  /// `handled` and `connecting` only.
  DisplayID display = 0;
  std::string name;
  /// On the joint scale; `handled` only.
  Percent level = 0;

  bool operator==(const AdjustOutcome&) const = default;
};

/// How a display's hardware level is driven.
enum class BrightnessBackendKind {
  /// The operating system's display services.
  appleDisplay,
  ddc,
  /// No hardware control, only software effects.
  none,
};

/// The enumerator's name: "appleDisplay", "ddc", "none".
std::string_view describe(BrightnessBackendKind kind);

/// Hardware levels from `lower` to `upper`, both included.
struct PercentRange {
  Percent lower = 0;
  Percent upper = 0;

  bool operator==(const PercentRange&) const = default;
};

/// One display as the menu and the report see it.
struct DisplayTarget {
  DisplayID displayID = 0;
  std::string name;
  bool isBuiltIn = false;
  /// 0 to 100 when the display's level can be set now, else absent.
  std::optional<PercentRange> ddcRange;

  bool supportsDDC() const { return ddcRange.has_value(); }

  bool operator==(const DisplayTarget&) const = default;
};

/// Conversion between percent and a display's raw DDC/CI value.
struct BrightnessScaling {
  /// `percent` limited to 0 to 100.
  static Percent clamp(Percent percent);
  /// The raw value, 0 to `max`, nearest to the clamped percent; halves round away from zero.
  static std::int64_t rawFromPercent(Percent percent, std::int64_t max);
  /// The percent, 0 to 100, nearest to `raw` of `max`; 0 when `max` is below 1.
  static Percent percentFromRaw(std::int64_t raw, std::int64_t max);
};

struct AdjustDecision {
  /// The next multiple of `step` above (`direction` > 0) or below (< 0) `from`, limited to 0 to
  /// 100. `from` itself when `step` is below 1 or `direction` is 0.
  static Percent snapped(Percent from, std::int64_t direction, Percent step);
};

}  // namespace brivane
