#include "Tools/BrivaneDesk/Weather/SystemWeather.h"

namespace brivane {

std::string SystemWeather::deskKeys() {
  std::string mapping;
  if (day.chance(30)) {
    mapping = "\"hidMapping\": [{\"source\": 30064771129, \"destination\": 30064771113}],\n ";
  }
  return mapping + "\"grants\": {\"accessibility\": " + (day.chance(25) ? "false" : "true") + "}";
}

void SystemWeather::writeStep() {
  const DayDisplay& display = day.anyDisplay();
  switch (day.pick(10)) {
    case 0:
    case 1:
    case 2:
      return press();
    case 3:
      if (display.isAttached) day.later("pointer " + std::to_string(display.number));
      return;
    case 4:
      return drag(display);
    case 5:
      return sleepAndWake();
    case 6:
      return killAndStart();
    case 7:
      return changeSetting();
    case 8:
      return day.quiet();
    default:
      return day.later("announce screens");
  }
}

void SystemWeather::press() {
  static constexpr std::array keys = {"control+option+up", "control+option+down", "brightness-up",
                                      "brightness-down"};
  static constexpr std::array lengths = {"30ms", "200ms", "900ms", "3s"};
  day.later(joined({"hold ", day.oneOf(keys), " for ", day.oneOf(lengths)}));
}

void SystemWeather::drag(const DayDisplay& display) {
  day.later("menu open");
  day.line(joined({"try slider \"Screen ", std::to_string(display.number), "\" drag to ",
                   std::to_string(day.pick(301) - 100), " over ",
                   day.oneOf(std::array{"100ms", "1s"})}));
  day.later("menu close");
}

void SystemWeather::sleepAndWake() {
  day.later("sleep");
  day.later("wake");
}

void SystemWeather::killAndStart() {
  day.later("kill");
  day.later("start");
}

void SystemWeather::changeSetting() {
  day.later(joined({"setting ", day.oneOf(std::array{"SubZeroDimming", "BrightenPastMaximum"}),
                    day.chance(50) ? " = true" : " = false"}));
}

}  // namespace brivane
