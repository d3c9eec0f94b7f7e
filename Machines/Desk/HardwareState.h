#pragma once

#include <array>
#include <optional>

#include "Machines/Desk/DeskDescription.h"
#include "Machines/Desk/JsonSection.h"
#include "Machines/Desk/MonitorFirmware.h"

// What the parts of the simulated hardware remember beside a monitor's firmware, and all of it as
// JSON.

namespace brivane {

/// Red, green and blue, of the same count.
using GammaTable = std::array<GammaCurve, 3>;

/// One display's gamma table as it was last written; absent while the calibrated one is in force.
struct GammaState {
  std::optional<GammaTable> written;

  bool operator==(const GammaState&) const = default;
};

/// The level that display services report, 0 to 1.
struct PanelState {
  float level = 0;

  bool operator==(const PanelState&) const = default;
};

/// Whether a settings domain holds the desk file's settings yet.
struct SeedState {
  bool isSeeded = false;

  bool operator==(const SeedState&) const = default;
};

/// What the launch-agent tool was told last; nothing when it never was.
struct LaunchState {
  std::optional<bool> isEnabled;

  bool operator==(const LaunchState&) const = default;
};

JsonValue toJson(const MonitorState& state);
void fromJson(const JsonItem& item, MonitorState& state);

/// Samples are written as the hexadecimal digits of their 32 bits, eight each: exact and short.
JsonValue toJson(const GammaState& state);
void fromJson(const JsonItem& item, GammaState& state);

JsonValue toJson(const PanelState& state);
void fromJson(const JsonItem& item, PanelState& state);

JsonValue toJson(const Point& state);
void fromJson(const JsonItem& item, Point& state);

JsonValue toJson(const HIDMapping& state);
void fromJson(const JsonItem& item, HIDMapping& state);

JsonValue toJson(const LaunchState& state);
void fromJson(const JsonItem& item, LaunchState& state);

JsonValue toJson(const SeedState& state);
void fromJson(const JsonItem& item, SeedState& state);

}  // namespace brivane
