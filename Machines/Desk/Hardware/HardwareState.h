#pragma once

#include <array>
#include <map>
#include <optional>

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"
#include "Machines/Desk/File/KeyTable.h"
#include "Machines/Desk/Hardware/MonitorFirmware.h"

// The states of the simulated hardware's parts (the firmware's is in MonitorFirmware.h), and their
// JSON.

namespace brivane {

/// Red, green and blue, of the same count.
using GammaTable = std::array<GammaCurve, 3>;

/// One display's gamma table.
struct GammaState {
  /// The table last written; absent while the calibrated one is in force.
  std::optional<GammaTable> written;
  /// The exponent of another colour profile's calibrated table; absent: the desk file's.
  std::optional<double> profile;
  /// How many more tables are refused.
  std::int64_t refusals = 0;

  bool operator==(const GammaState&) const = default;
};

/// The level that display services report, 0 to 1.
struct PanelState {
  float level = 0;

  bool operator==(const PanelState&) const = default;
};

/// Whether a settings domain has received the desk file's settings.
struct SeedState {
  bool isSeeded = false;

  bool operator==(const SeedState&) const = default;
};

/// The last command to the launch-agent tool, enable or disable; nothing before the first.
struct LaunchState {
  std::optional<bool> isEnabled;

  bool operator==(const LaunchState&) const = default;
};

struct SystemState {
  bool isAsleep = false;

  bool operator==(const SystemState&) const = default;
};

/// The Accessibility grant.
struct GrantState {
  bool isGranted = true;

  bool operator==(const GrantState&) const = default;
};

/// The keys that are down.
struct KeysDown {
  /// The usage that the HID mapping gave each key when it was pressed, by physical usage.
  std::map<HIDUsage, HIDUsage> arrived;

  bool operator==(const KeysDown&) const = default;
};

JsonValue toJson(const MonitorState& state);
void fromJson(const JsonItem& item, MonitorState& state);

/// Each sample is the eight hexadecimal digits of its 32 bits: exact and short.
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

JsonValue toJson(const ToolsState& state);
void fromJson(const JsonItem& item, ToolsState& state);

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
