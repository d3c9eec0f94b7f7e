#include "Tools/BrivaneDesk/Weather/DisplayWeather.h"

namespace brivane {
namespace {

std::string named(const DayDisplay& display) {
  return std::to_string(display.number);
}

}  // namespace

std::string DisplayWeather::deskKeys() {
  const int count = day.chance(80) ? 1 + day.pick(4) : 5 + day.pick(4);
  // The displays' ports need not be in the displays' order.
  const int shift = day.pick(count);
  std::string text = "\"displays\": [\n";
  for (int number = 1; number <= count; ++number) {
    day.displays.push_back({number});
    const int port = (shift + number) % count;
    text += "  " + displayText(day.displays.back(), "dispext" + std::to_string(port)) +
            (number < count ? ",\n" : "\n");
  }
  return text + "]";
}

/// Some displays are twins, with serial numbers and without.
std::string DisplayWeather::displayText(DayDisplay& display, const std::string& port) {
  const std::string number = named(display);
  const std::string json = joined({"{\"identifier\": ", number, ", \"name\": \"Screen ", number,
                                   "\", \"model\": ", std::to_string(100 + day.pick(3)),
                                   ", \"serial\": ", serial(display)});
  if (display.number == 1 && day.chance(30)) {
    return json + ", \"builtIn\": true, \"displayServices\": {\"level\": 0.5}}";
  }
  if (day.chance(6)) {
    return joined({json, ", \"port\": \"", port,
                   "\", \"vendor\": 1552, \"firmware\": null, \"displayServices\": ",
                   day.oneOf(std::array{"{\"level\": 0.7}", "{\"canChange\": false}"}), "}"});
  }
  return joined({json, ", \"port\": \"", port, "\"", registryText(port), firmwareText(display),
                 gammaText(display), "}"});
}

std::string DisplayWeather::serial(const DayDisplay& display) {
  if (day.chance(30)) return "0";
  return day.chance(15) ? "7" : std::to_string(9 + display.number);
}

/// What makes a monitor hard to find, or another one be taken for it.
std::string DisplayWeather::registryText(const std::string& port) {
  static constexpr std::array oddities = {
      "\"DisplayAttributes\": null", "\"SerialNumber\": null", "\"ProductID\": \"none\"",
      "\"Location\": \"Internal\"",  "\"proxy\": false",       "\"service\": false",
      "\"panelDepth\": 8",           "\"panelDepth\": 9"};
  if (day.chance(80)) return "";
  if (day.chance(10)) return ", \"registry\": {\"proxyParent\": \"" + port + ":av:1\"}";
  return ", \"registry\": {" + day.oneOf(oddities) + "}";
}

std::string DisplayWeather::firmwareText(DayDisplay& display) {
  static constexpr std::array maximums = {"100", "255", "50", "7000"};
  static constexpr std::array replies = {"0", "20", "40", "60", "250"};
  static constexpr std::array wakes = {"0", "0", "0", "1.5", "20", "170"};
  if (day.chance(4)) return ", \"firmware\": null";
  display.hasFirmware = true;
  return joined({", \"firmware\": {\"maximum\": ", day.oneOf(maximums), ", \"replyMilliseconds\": ",
                 day.oneOf(replies), ", \"wakeSeconds\": ", day.oneOf(wakes),
                 day.chance(20) ? ", \"revertsAfterWake\": true" : "",
                 day.chance(15) ? ", \"ignoresEveryOtherWrite\": true" : "",
                 day.chance(3) ? ", \"luminance\": false" : "", "}"});
}

std::string DisplayWeather::gammaText(DayDisplay& display) {
  static constexpr std::array gammas = {
      "{\"capacity\": 256}", "{\"capacity\": 1024}",
      "{\"capacity\": 64, \"calibrated\": {\"exponents\": [1.02, 1, 0.96]}}",
      "{\"capacity\": 5, \"calibrated\": {\"red\": [0, 0.05, 0.6, 1],"
      " \"green\": [0, 0.1, 0.7, 1], \"blue\": [0, 0.1, 0.2, 1]}}"};
  static constexpr std::array headrooms = {"1", "1", "1.6", "4"};
  display.hasGamma = !day.chance(3);
  if (!display.hasGamma) return ", \"gamma\": null";
  return joined({", \"gamma\": ", day.oneOf(gammas), ", \"headroom\": ", day.oneOf(headrooms)});
}

void DisplayWeather::writeStep() {
  DayDisplay& display = day.anyDisplay();
  switch (day.pick(10)) {
    case 0:
    case 1:
      return replug(display);
    case 2:
      return changeHeadroom(display);
    case 3:
      return wakeLate(display);
    case 4:
      return rearrange(display);
    case 5:
      return swapPorts(display);
    case 6:
      return pressButtonsUnseen(display);
    case 7:
      return changeRegistry(display);
    default:
      return disturb(display);
  }
}

/// Displays stay in columns of their own, so that none covers another.
void DisplayWeather::rearrange(const DayDisplay& display) {
  static constexpr std::array heights = {"0", "1080", "-1080", "300.5"};
  if (!display.isAttached) return;
  day.later(joined({"move ", named(display), " to {", std::to_string(1920 * (display.number - 1)),
                    ",", day.oneOf(heights), "}"}));
}

void DisplayWeather::swapPorts(const DayDisplay& display) {
  const DayDisplay& other = day.anyDisplay();
  if (other.number == display.number || !display.isAttached || !other.isAttached) return;
  day.later("swap " + named(display) + " and " + named(other));
  // The program notices only when something else changes, too.
  if (day.chance(50)) rearrange(display);
}

void DisplayWeather::changeRegistry(const DayDisplay& display) {
  static constexpr std::array entries = {"noPanel", "none", "panelTwice", "panelTwice", "all"};
  day.later("registry " + named(display) + " " + day.oneOf(entries));
  // Otherwise the program looks again only for a display that it has not found.
  if (day.chance(50)) return;
  day.line("sleep");
  day.later("wake");
}

/// While the monitor doesn't answer.
void DisplayWeather::pressButtonsUnseen(const DayDisplay& display) {
  if (!display.hasFirmware) return;
  const bool isAsleep = day.chance(50);
  const std::string number = named(display);
  day.later(isAsleep ? "monitor " + number + " sleeps" : "mood " + number + " silent");
  day.later("buttons " + number + " " + std::to_string(day.pick(51)));
  if (day.chance(30)) day.later("hold control+option+up for 900ms");
  day.later(isAsleep ? "monitor " + number + " wakes" : "mood " + number + " answering");
}

/// A display that has come back may be used before its level is restored.
void DisplayWeather::replug(DayDisplay& display) {
  const std::string number = named(display);
  if (!display.isAttached) return plug(display);
  day.later("unplug " + number);
  display.isAttached = false;
}

/// Under another number at times, and before the registry has the display.
void DisplayWeather::plug(DayDisplay& display) {
  const std::string number = named(display);
  const bool isLate = day.chance(20);
  if (isLate) day.line("registry " + number + " none");
  const bool isRenumbered = day.chance(20);
  day.later("plug " + number + (isRenumbered ? " as " + std::to_string(++lastNumber) : ""));
  if (isLate) day.later("registry " + number + " all");
  display.isAttached = true;
  if (!display.hasFirmware || day.chance(60)) return;
  day.line("+100ms menu open");
  day.line("+300ms buttons " + number + " " + std::to_string(day.pick(51)));
  day.line("+1.3s menu close");
}

void DisplayWeather::changeHeadroom(const DayDisplay& display) {
  if (!display.isAttached) return;
  day.later("headroom " + named(display) + " " + day.oneOf(std::array{"1", "1.6", "3"}));
}

void DisplayWeather::disturb(const DayDisplay& display) {
  static constexpr std::array moods = {"silent",    "busError", "nullReply", "garbled",
                                       "stale",     "shifted",  "doubled",   "forgetful",
                                       "forgetful", "answering"};
  if (!display.hasFirmware || !display.isAttached) return;
  const std::string number = named(display);
  switch (day.pick(4)) {
    case 0:
      return day.later("buttons " + number + " " + std::to_string(day.pick(51)));
    case 1:
      return day.later("monitor " + number + (day.chance(50) ? " sleeps" : " wakes"));
    case 2:
      return refuseGamma(display);
    default:
      return day.later("mood " + number + " " + day.oneOf(moods));
  }
}

/// The refused table may be that of a wake.
void DisplayWeather::refuseGamma(const DayDisplay& display) {
  if (!display.hasGamma) return;
  day.later("refuse gamma " + named(display) + " 1 times");
  if (day.chance(50)) return;
  day.line("sleep");
  day.line("+1s wake");
}

/// A monitor that answers only long after a wake.
void DisplayWeather::wakeLate(const DayDisplay& display) {
  if (!display.hasFirmware || !display.isAttached) return;
  const std::string number = named(display);
  day.line("+1s mood " + number + " silent");
  day.line("+1s sleep");
  day.line("+1s wake");
  // The program waits actively for 180 s.
  day.line("+" + day.oneOf(std::array{"20s", "200s"}) + " mood " + number + " answering");
  day.quiet();
}

void DisplayWeather::writeEnd() {
  for (const auto& display : day.displays) {
    const std::string number = named(display);
    if (!display.isAttached) day.line("plug " + number);
    day.line("registry " + number + " all");
    if (display.hasGamma) day.line("refuse gamma " + number + " 0 times");
    if (!display.hasFirmware) continue;
    day.line("mood " + number + " answering");
    day.line("monitor " + number + " wakes");
  }
}

}  // namespace brivane
