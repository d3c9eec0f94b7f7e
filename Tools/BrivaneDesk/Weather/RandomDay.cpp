#include "Tools/BrivaneDesk/Weather/RandomDay.h"

#include "Tools/BrivaneDesk/Weather/DayText.h"
#include "Tools/BrivaneDesk/Weather/DisplayWeather.h"
#include "Tools/BrivaneDesk/Weather/OutsideWeather.h"
#include "Tools/BrivaneDesk/Weather/SystemWeather.h"
#include "Tools/BrivaneDesk/Weather/ToolWeather.h"
#include "Tools/BrivaneDesk/Weather/UserWeather.h"

namespace brivane {
namespace {

void writeBusyTime(DayText& day, DisplayWeather& displays, SystemWeather& system,
                   ToolWeather& tools, UserWeather& user, OutsideWeather& outside) {
  const int steps = 30 + day.pick(50);
  for (int step = 0; step < steps; ++step) {
    const int kind = day.pick(100);
    if (kind < 30) {
      displays.writeStep();
    } else if (kind < 36) {
      tools.writeStep();
    } else if (kind < 70) {
      system.writeStep();
    } else if (kind < 82) {
      user.writeStep();
    } else {
      outside.writeStep();
    }
  }
}

/// The judge reads the menu after the quiet.
void writeRandomDayEnd(DayText& day, DisplayWeather& displays, ToolWeather& tools,
                       UserWeather& user, OutsideWeather& outside) {
  tools.writeEnd();
  user.writeEnd();
  outside.writeEnd();
  displays.writeEnd();
  day.quiet();
  day.line(std::string("+78s ") + (day.chance(50) ? "quit" : "signal"));
  day.line("+1s expect exit 0");
  day.line("expect clean");
  if (!tools.hasChangedMapping()) day.line("expect mapping as at first");
}

}  // namespace

std::string randomDay(std::uint64_t seed, Microseconds length) {
  DayText day(seed);
  DisplayWeather displays(day);
  SystemWeather system(day);
  ToolWeather tools(day);
  UserWeather user(day);
  OutsideWeather outside(day);
  day.line(
      joined({"desk {", displays.deskKeys(), ",\n ", system.deskKeys(), outside.deskKeys(), "}"}));
  day.line("at 0s start");
  writeBusyTime(day, displays, system, tools, user, outside);
  while (day.length() < length) {
    day.line("+" + day.oneOf(std::array{"5min", "20min", "1h"}) + " end");
    writeBusyTime(day, displays, system, tools, user, outside);
  }
  writeRandomDayEnd(day, displays, tools, user, outside);
  return day.written();
}

}  // namespace brivane
