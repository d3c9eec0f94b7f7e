#include "Tools/BrivaneDesk/Weather/DisplayWeather.h"

namespace brivane {

std::string DisplayWeather::deskKeys() {
  const int count = 1 + day.pick(4);
  std::string text = "\"displays\": [\n";
  for (int number = 1; number <= count; ++number) {
    day.displays.push_back({number});
    text += "  " + displayText(day.displays.back()) + (number < count ? ",\n" : "\n");
  }
  return text + "]";
}

std::string DisplayWeather::displayText(DayDisplay& display) {
  static constexpr std::array gammas = {
      ", \"gamma\": {\"capacity\": 256}", ", \"gamma\": {\"capacity\": 1024}",
      ", \"gamma\": {\"capacity\": 64, \"calibrated\": {\"exponents\": [1.02, 1, 0.96]}}",
      ", \"gamma\": {\"capacity\": 5, \"calibrated\": {\"red\": [0, 0.05, 0.6, 1],"
      " \"green\": [0, 0.1, 0.7, 1], \"blue\": [0, 0.1, 0.2, 1]}}"};
  static constexpr std::array headrooms = {"1", "1", "1.6", "4"};
  static constexpr std::array maximums = {"100", "255", "50", "7000"};
  const std::string number = std::to_string(display.number);
  std::string json =
      joined({"{\"identifier\": ", number, ", \"name\": \"Screen ", number,
              "\", \"model\": ", std::to_string(100 + day.pick(3)),
              ", \"serial\": ", day.chance(30) ? "0" : std::to_string(9 + display.number)});
  if (display.number == 1 && day.chance(30)) {
    return json + ", \"builtIn\": true, \"displayServices\": {\"level\": 0.5}}";
  }
  display.hasFirmware = true;
  return joined({json, ", \"firmware\": {\"maximum\": ", day.oneOf(maximums),
                 ", \"replyMilliseconds\": ", std::to_string(day.pick(3) * 20), "}",
                 day.oneOf(gammas), ", \"headroom\": ", day.oneOf(headrooms), "}"});
}

void DisplayWeather::writeStep() {
  DayDisplay& display = day.anyDisplay();
  switch (day.pick(4)) {
    case 0:
      return replug(display);
    case 1:
      return changeHeadroom(display);
    case 2:
      return wakeLate(display);
    default:
      return disturb(display);
  }
}

/// A display that has come back may be used before its level is restored.
void DisplayWeather::replug(DayDisplay& display) {
  const std::string number = std::to_string(display.number);
  day.later(display.isAttached ? "unplug " + number : "plug " + number);
  display.isAttached = !display.isAttached;
  if (!display.isAttached || !display.hasFirmware || day.chance(60)) return;
  day.line("+100ms menu open");
  day.line("+300ms buttons " + number + " " + std::to_string(day.pick(51)));
  day.line("+1.3s menu close");
}

void DisplayWeather::changeHeadroom(const DayDisplay& display) {
  if (!display.isAttached) return;
  day.later("headroom " + std::to_string(display.number) + " " +
            day.oneOf(std::array{"1", "1.6", "3"}));
}

void DisplayWeather::disturb(const DayDisplay& display) {
  static constexpr std::array moods = {"silent", "busError", "nullReply", "garbled",
                                       "stale",  "shifted",  "doubled",   "answering"};
  if (!display.hasFirmware || !display.isAttached) return;
  const std::string number = std::to_string(display.number);
  switch (day.pick(4)) {
    case 0:
      return day.later("buttons " + number + " " + std::to_string(day.pick(51)));
    case 1:
      return day.later("monitor " + number + (day.chance(50) ? " sleeps" : " wakes"));
    case 2:
      return refuseGamma(number);
    default:
      return day.later("mood " + number + " " + day.oneOf(moods));
  }
}

/// The refused table may be that of a wake.
void DisplayWeather::refuseGamma(const std::string& number) {
  day.later("refuse gamma " + number + " 1 times");
  if (day.chance(50)) return;
  day.line("sleep");
  day.line("+1s wake");
}

/// A monitor that answers only long after a wake.
void DisplayWeather::wakeLate(const DayDisplay& display) {
  if (!display.hasFirmware || !display.isAttached) return;
  const std::string number = std::to_string(display.number);
  day.line("+1s mood " + number + " silent");
  day.line("+1s sleep");
  day.line("+1s wake");
  // The program waits actively for 180 s.
  day.line("+" + day.oneOf(std::array{"20s", "200s"}) + " mood " + number + " answering");
  day.quiet();
}

void DisplayWeather::writeEnd() {
  for (const auto& display : day.displays) {
    const std::string number = std::to_string(display.number);
    if (!display.isAttached) day.line("plug " + number);
    if (display.hasFirmware) {
      day.line("mood " + number + " answering");
      day.line("monitor " + number + " wakes");
      day.line("refuse gamma " + number + " 0 times");
    }
  }
}

}  // namespace brivane
