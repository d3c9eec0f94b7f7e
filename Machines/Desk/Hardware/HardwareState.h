#pragma once

#include <array>
#include <map>
#include <optional>

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"
#include "Machines/Desk/File/KeyTable.h"
#include "Machines/Desk/Hardware/MonitorFirmware.h"

// What the parts of the simulated hardware remember beside a monitor's firmware, and all of it as
// JSON.

namespace brivane {

/// Red, green and blue, of the same count.
using GammaTable = std::array<GammaCurve, 3>;

/// One display's gamma table.
struct GammaState {
  /// As it was last written; absent while the calibrated one is in force.
  std::optional<GammaTable> written;
  /// How many of the next tables are refused.
  std::int64_t refusals = 0;

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

/// The machine itself.
struct SystemState {
  bool isAsleep = false;

  bool operator==(const SystemState&) const = default;
};

/// What the user has granted the program.
struct GrantState {
  bool isGranted = true;

  bool operator==(const GrantState&) const = default;
};

/// The keys that are down.
struct KeysDown {
  /// What the HID mapping made of each when it was pressed.
  std::map<HIDUsage, HIDUsage> arrived;

  bool operator==(const KeysDown&) const = default;
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

JsonValue toJson(const SystemState& state);
void fromJson(const JsonItem& item, SystemState& state);

JsonValue toJson(const GrantState& state);
void fromJson(const JsonItem& item, GrantState& state);

JsonValue toJson(DeskAppearance state);
void fromJson(const JsonItem& item, DeskAppearance& state);

JsonValue toJson(const KeysDown& state);
void fromJson(const JsonItem& item, KeysDown& state);

JsonValue toJson(const SeedState& state);
void fromJson(const JsonItem& item, SeedState& state);

}  // namespace brivane
