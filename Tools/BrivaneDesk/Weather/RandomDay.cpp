#include "Tools/BrivaneDesk/Weather/RandomDay.h"

#include "Tools/BrivaneDesk/Weather/DayText.h"
#include "Tools/BrivaneDesk/Weather/DisplayWeather.h"
#include "Tools/BrivaneDesk/Weather/SystemWeather.h"

namespace brivane {
namespace {

/// The judge reads the menu after the quiet.
void writeRandomDayEnd(DayText& day, DisplayWeather& displays, SystemWeather& system) {
  system.writeEnd();
  displays.writeEnd();
  day.quiet();
  day.line(std::string("+78s ") + (day.chance(50) ? "quit" : "signal"));
  day.line("+1s expect exit 0");
  day.line("expect clean");
  day.line("expect mapping as at first");
}

}  // namespace

std::string randomDay(std::uint64_t seed) {
  DayText day(seed);
  DisplayWeather displays(day);
  SystemWeather system(day);
  day.line(joined({"desk {", displays.deskKeys(), ",\n ", system.deskKeys(), "}"}));
  day.line("at 0s start");
  const int steps = 30 + day.pick(50);
  for (int step = 0; step < steps; ++step) {
    if (day.chance(30)) {
      displays.writeStep();
    } else {
      system.writeStep();
    }
  }
  writeRandomDayEnd(day, displays, system);
  return day.written();
}

}  // namespace brivane
