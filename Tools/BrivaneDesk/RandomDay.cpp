// A day is an ordinary scenario, so that a failing one can be read, shortened and kept as a test.
// It ends with two quiet minutes and a quit, after which the program must have left no trace.
#include "Tools/BrivaneDesk/RandomDay.h"

#include <array>
#include <random>
#include <vector>

namespace brivane {
namespace {

class Day {
 public:
  explicit Day(std::uint64_t seed) : random(seed) {
    text = "# The random day of seed " + std::to_string(seed) + ".\n";
  }

  std::string write() {
    writeDesk();
    line("at 0s start");
    const int steps = 30 + pick(50);
    for (int step = 0; step < steps; ++step) writeStep();
    writeEnd();
    return text;
  }

 private:
  // Standard libraries' distributions differ; a remainder is the same everywhere.
  int pick(int count) { return static_cast<int>(random() % static_cast<std::uint64_t>(count)); }
  bool chance(int percent) { return pick(100) < percent; }
  template <std::size_t Count>
  std::string oneOf(const std::array<const char*, Count>& words) {
    return words.at(static_cast<std::size_t>(pick(static_cast<int>(Count))));
  }

  void line(const std::string& words) { text += words + "\n"; }

  void later(const std::string& step) {
    static constexpr std::array pauses = {"0s",   "3ms", "40ms", "170ms", "350ms",
                                          "1.2s", "2s",  "7s",   "20s"};
    line("+" + oneOf(pauses) + " " + step);
  }

  void writeDesk() {
    const int count = 1 + pick(4);
    line("desk {\"displays\": [");
    for (int index = 0; index < count; ++index) {
      displays.push_back({index + 1});
      text += "  " + displayText(index) + (index + 1 < count ? ",\n" : "\n");
    }
    line(std::string("],") +
         (chance(30) ? " \"hidMapping\": [{\"source\": 30064771129, \"destination\": 30064771113}],"
                     : "") +
         " \"grants\": {\"accessibility\": " + (chance(25) ? "false" : "true") + "}}");
  }

  std::string displayText(int index) {
    static constexpr std::array gammas = {
        ", \"gamma\": {\"capacity\": 256}", ", \"gamma\": {\"capacity\": 1024}",
        ", \"gamma\": {\"capacity\": 64, \"calibrated\": {\"exponents\": [1.02, 1, 0.96]}}",
        ", \"gamma\": {\"capacity\": 5, \"calibrated\": {\"red\": [0, 0.05, 0.6, 1],"
        " \"green\": [0, 0.1, 0.7, 1], \"blue\": [0, 0.1, 0.2, 1]}}"};
    static constexpr std::array headrooms = {"1", "1", "1.6", "4"};
    static constexpr std::array maximums = {"100", "255", "50", "7000"};
    Display& display = displays.back();
    const std::string number = std::to_string(index + 1);
    std::string json = "{\"identifier\": " + number + ", \"name\": \"Screen " + number +
                       "\", \"model\": " + std::to_string(100 + pick(3)) +
                       ", \"serial\": " + (chance(30) ? "0" : std::to_string(10 + index));
    if (index == 0 && chance(30)) {
      return json + ", \"builtIn\": true, \"displayServices\": {\"level\": 0.5}}";
    }
    display.hasFirmware = true;
    json += ", \"firmware\": {\"maximum\": " + oneOf(maximums) +
            ", \"replyMilliseconds\": " + std::to_string(pick(3) * 20) + "}";
    json += oneOf(gammas);
    return json + ", \"headroom\": " + oneOf(headrooms) + "}";
  }

  struct Display {
    int number = 0;
    bool hasFirmware = false;
    bool isAttached = true;
  };

  Display& anyDisplay() {
    return displays.at(static_cast<std::size_t>(pick(static_cast<int>(displays.size()))));
  }

  void writeStep() {
    Display& display = anyDisplay();
    const std::string number = std::to_string(display.number);
    switch (pick(14)) {
      case 0:
      case 1:
      case 2:
        return press();
      case 3:
        if (display.isAttached) later("pointer " + number);
        return;
      case 4:
        return drag(number);
      case 5:
        return replug(display);
      case 6:
        return disturb(display);
      case 7:
        later("sleep");
        return later("wake");
      case 8:
        later("kill");
        return later("start");
      case 9:
        return later("headroom " + number + " " + oneOf(std::array{"1", "1.6", "3"}),
                     display.isAttached);
      case 10:
        return later("setting " + oneOf(std::array{"SubZeroDimming", "BrightenPastMaximum"}) +
                     (chance(50) ? " = true" : " = false"));
      case 11:
        return quiet();
      case 12:
        return wakeLate(display);
      default:
        return later("announce screens");
    }
  }

  void later(const std::string& step, bool isPossible) {
    if (isPossible) later(step);
  }

  void press() {
    static constexpr std::array keys = {"control+option+up", "control+option+down", "brightness-up",
                                        "brightness-down"};
    static constexpr std::array lengths = {"30ms", "200ms", "900ms", "3s"};
    later("hold " + oneOf(keys) + " for " + oneOf(lengths));
  }

  void drag(const std::string& number) {
    later("menu open");
    text += "try slider \"Screen " + number + "\" drag to " + std::to_string(pick(301) - 100) +
            " over " + oneOf(std::array{"100ms", "1s"}) + "\n";
    later("menu close");
  }

  /// A display that has come back may be used before its level is restored.
  void replug(Display& display) {
    const std::string number = std::to_string(display.number);
    later(display.isAttached ? "unplug " + number : "plug " + number);
    display.isAttached = !display.isAttached;
    if (!display.isAttached || !display.hasFirmware || chance(60)) return;
    line("+100ms menu open");
    line("+300ms buttons " + number + " " + std::to_string(pick(51)));
    line("+1.3s menu close");
  }

  /// The refused table may be that of a wake.
  void refuseGamma(const std::string& number) {
    later("refuse gamma " + number + " 1 times");
    if (chance(50)) return;
    line("sleep");
    line("+1s wake");
  }

  /// A monitor that answers only long after a wake.
  void wakeLate(const Display& display) {
    if (!display.hasFirmware || !display.isAttached) return;
    const std::string number = std::to_string(display.number);
    line("+1s mood " + number + " silent");
    line("+1s sleep");
    line("+1s wake");
    // The program waits actively for 180 s.
    line("+" + oneOf(std::array{"20s", "200s"}) + " mood " + number + " answering");
    quiet();
  }

  /// Time in which everything comes to rest, and a look at the menu, which may have been open.
  void quiet() {
    const bool isOpen = chance(30);
    if (isOpen) line("+1s menu open");
    line(isOpen ? "+40s end" : "+40s menu open");
    line("+2s menu close");
  }

  void disturb(const Display& display) {
    static constexpr std::array moods = {"silent", "busError", "nullReply", "garbled",
                                         "stale",  "shifted",  "doubled",   "answering"};
    if (!display.hasFirmware || !display.isAttached) return;
    const std::string number = std::to_string(display.number);
    switch (pick(4)) {
      case 0:
        return later("buttons " + number + " " + std::to_string(pick(51)));
      case 1:
        return later("monitor " + number + (chance(50) ? " sleeps" : " wakes"));
      case 2:
        return refuseGamma(number);
      default:
        return later("mood " + number + " " + oneOf(moods));
    }
  }

  void writeEnd() {
    for (const auto& display : displays) {
      const std::string number = std::to_string(display.number);
      if (!display.isAttached) line("plug " + number);
      if (display.hasFirmware) {
        line("mood " + number + " answering");
        line("monitor " + number + " wakes");
        line("refuse gamma " + number + " 0 times");
      }
    }
    // The judge reads the menu after the quiet.
    quiet();
    line(std::string("+78s ") + (chance(50) ? "quit" : "signal"));
    line("+1s expect exit 0");
    line("expect clean");
    line("expect mapping as at first");
  }

  std::mt19937_64 random;
  std::vector<Display> displays;
  std::string text;
};

}  // namespace

std::string randomDay(std::uint64_t seed) {
  return Day(seed).write();
}

}  // namespace brivane
