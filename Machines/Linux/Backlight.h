#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <variant>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/DDC/Connectors.h"
#include "Machines/Linux/DDC/MissingAccess.h"
#include "Machines/Linux/SessionBacklight.h"

namespace brivane {

/// The display-services calls over the kernel's backlight, for the built-in panel only. Failures
/// are the system's error numbers. Main and DDC queue.
class LinuxBacklight {
 public:
  /// The connector of a display; nothing when it is unknown.
  using ConnectorSource = std::function<std::optional<Connector>(DisplayID display)>;

  /// All must outlive this.
  LinuxBacklight(DisplaySystem& displaySystem, ConnectorSource connectorSource,
                 MissingAccess& machineMissingAccess, SessionBacklight& byLogind,
                 std::filesystem::path classFolder = "/sys/class/backlight");

  /// See GetBrightnessFunction, SetBrightnessFunction, CanChangeBrightnessFunction. Levels are
  /// rounded to the backlight's nearest step; the lowest of raw registers is step 1, because step 0
  /// may switch the panel off. Without write permission, logind sets the backlight.
  std::int32_t get(DisplayID display, float& level) const;
  std::int32_t set(DisplayID display, float level) const;
  bool canChange(DisplayID display) const;

 private:
  /// A backlight's folder in sysfs and its range of steps.
  struct Range {
    std::filesystem::path folder;
    std::int64_t lowest = 0;
    std::int64_t highest = 0;
  };
  /// Why there is none: an error number.
  std::variant<Range, std::int32_t> rangeOf(DisplayID display) const;
  std::optional<std::filesystem::path> backlightOf(DisplayID display) const;

  DisplaySystem& displays;
  const ConnectorSource connectorOf;
  MissingAccess& missingAccess;
  SessionBacklight& session;
  const std::filesystem::path folder;
};

}  // namespace brivane
