#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/MissingAccess.h"
#include "Machines/Linux/SessionBacklight.h"

namespace brivane {

/// The display-services calls over the kernel's backlight, which is the built-in panel's; every
/// other display is refused. Failures are the system's error numbers. Main and DDC queue.
class LinuxBacklight {
 public:
  /// All must outlive this.
  LinuxBacklight(DisplaySystem& displaySystem, MissingAccess& itsMissingAccess,
                 SessionBacklight& byLogind,
                 std::filesystem::path classFolder = "/sys/class/backlight");

  /// Whether there is any backlight.
  bool exists() const;

  /// See GetBrightnessFunction, SetBrightnessFunction, CanChangeBrightnessFunction. The backlight
  /// takes the step nearest to the level. Where this user may not write it, logind is asked to.
  std::int32_t get(DisplayID display, float& level) const;
  std::int32_t set(DisplayID display, float level) const;
  bool canChange(DisplayID display) const;

 private:
  /// The folder of the backlight to use for the display.
  std::optional<std::filesystem::path> backlightOf(DisplayID display) const;

  DisplaySystem& displays;
  MissingAccess& missingAccess;
  SessionBacklight& session;
  const std::filesystem::path folder;
};

}  // namespace brivane
