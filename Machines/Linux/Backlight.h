#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/MissingAccess.h"
#include "Machines/Linux/SessionBacklight.h"

namespace brivane {

/// The display-services calls over the kernel's backlight, for the built-in panel only. Failures
/// are the system's error numbers. Main and DDC queue.
class LinuxBacklight {
 public:
  /// All must outlive this.
  LinuxBacklight(DisplaySystem& displaySystem, MissingAccess& machineMissingAccess,
                 SessionBacklight& byLogind,
                 std::filesystem::path classFolder = "/sys/class/backlight");

  /// Whether there is any backlight.
  bool exists() const;

  /// See GetBrightnessFunction, SetBrightnessFunction, CanChangeBrightnessFunction. Levels are
  /// rounded to the backlight's nearest step. Without write permission, logind sets the backlight.
  std::int32_t get(DisplayID display, float& level) const;
  std::int32_t set(DisplayID display, float level) const;
  bool canChange(DisplayID display) const;

 private:
  /// The backlight's folder in sysfs.
  std::optional<std::filesystem::path> backlightOf(DisplayID display) const;

  DisplaySystem& displays;
  MissingAccess& missingAccess;
  SessionBacklight& session;
  const std::filesystem::path folder;
};

}  // namespace brivane
