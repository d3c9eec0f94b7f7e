#include "Tools/BrivaneDesk/Weather/ToolWeather.h"

namespace brivane {

void ToolWeather::writeStep() {
  switch (day.pick(6)) {
    case 0:
      return failKeyTool();
    case 1:
      return failLaunchTool();
    case 2:
    case 3:
      return changeMapping();
    default:
      return runCommand();
  }
}

/// The tool runs at a start, after a wake, each minute and when the user switches the keys.
void ToolWeather::failKeyTool() {
  const std::string kind = day.oneOf(std::array{"missing", "refusing", "garbled"});
  day.later("hidutil " + kind);
  // What can't be read isn't kept.
  if (kind == "garbled") isMappingChanged = true;
  const int cause = day.pick(3);
  if (cause == 0) day.line("+1s sleep");
  if (cause == 0) day.line("+1s wake");
  if (cause == 1) day.line("+1s kill");
  if (cause == 1) day.line("+1s start");
  if (cause == 2) day.line("+61s end");
  if (day.chance(70)) day.later("hidutil present");
}

void ToolWeather::failLaunchTool() {
  day.later("launchctl " + day.oneOf(std::array{"missing", "refusing", "garbled"}));
  day.line("+1s menu open");
  day.line("try menu choose \"Launch at Login\"");
  day.line("menu close");
  day.later("launchctl present");
}

/// Entries for other keys, and one for a key that the program maps itself.
void ToolWeather::changeMapping() {
  static constexpr std::array changes = {"cleared",
                                         "cleared",
                                         "f5 to f6",
                                         "f1 to f2",
                                         "brightness-up to f5",
                                         "brightness-down to f20"};
  day.later("mapping " + day.oneOf(changes));
  isMappingChanged = true;
}

void ToolWeather::runCommand() {
  static constexpr std::array commands = {"--probe",  "--unmap",   "--set 0",
                                          "--set 37", "--set 100", "--set 55"};
  day.later("command " + day.oneOf(commands));
}

void ToolWeather::writeEnd() {
  day.line("hidutil present");
  day.line("launchctl present");
}

}  // namespace brivane
