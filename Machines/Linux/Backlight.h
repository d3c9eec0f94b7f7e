#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/Findings.h"

namespace brivane {

/// The display-services calls over the kernel's backlight, which is the built-in panel's; every
/// other display is refused. Failures are the system's error numbers. Main and DDC queue.
class LinuxBacklight {
 public:
  LinuxBacklight(DisplaySystem& displaySystem, Findings& itsFindings,
                 std::filesystem::path classFolder = "/sys/class/backlight");

  /// Whether there is any backlight.
  bool exists() const;

  /// See GetBrightnessFunction, SetBrightnessFunction, CanChangeBrightnessFunction. The backlight
  /// takes the step nearest to the level.
  std::int32_t get(DisplayID display, float& level) const;
  std::int32_t set(DisplayID display, float level) const;
  bool canChange(DisplayID display) const;

 private:
  /// The folder of the backlight to use for the display.
  std::optional<std::filesystem::path> backlightOf(DisplayID display) const;

  DisplaySystem& displays;
  Findings& findings;
  const std::filesystem::path folder;
};

}  // namespace brivane
