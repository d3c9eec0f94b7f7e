#pragma once

#include <string>

#include "Tools/BrivaneDesk/Weather/DayText.h"

namespace brivane {

/// What happens to the system's tools and to the keyboard's mapping, and commands that run beside
/// the program.
class ToolWeather {
 public:
  explicit ToolWeather(DayText& whoseDay) : day(whoseDay) {}

  void writeStep();
  /// Afterwards the tools work.
  void writeEnd();
  /// Whether others' entries may be other ones than at first.
  [[nodiscard]] bool hasChangedMapping() const { return isMappingChanged; }

 private:
  void failKeyTool();
  void failLaunchTool();
  void changeMapping();
  void runCommand();

  DayText& day;
  bool isMappingChanged = false;
};

}  // namespace brivane
