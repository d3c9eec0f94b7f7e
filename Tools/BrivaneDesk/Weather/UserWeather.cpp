#include "Tools/BrivaneDesk/Weather/UserWeather.h"

namespace brivane {

void UserWeather::writeStep() {
  switch (day.pick(8)) {
    case 0:
    case 1:
      return command();
    case 2:
      return quitAndStart();
    case 3:
    case 4:
      return edit();
    default:
      return shiftInSweep();
  }
}

/// Nothing when the menu lacks the command. The editor gets the keyboard away from an open menu.
void UserWeather::choose(const std::string& command) {
  day.later("menu open");
  day.line("+200ms try menu choose \"" + command + "\"");
}

void UserWeather::command() {
  choose(day.oneOf(std::array{"Use System Brightness Keys", "Use System Brightness Keys",
                              "Restore Saved Brightness", "Clear Software Dimming and Brightening",
                              "Retry Displays That Don’t Respond", "Launch at Login"}));
}

void UserWeather::quitAndStart() {
  choose("Quit Brivane");
  day.later("try start");
}

void UserWeather::edit() {
  isEdited = true;
  choose("Change Hotkeys…");
  const int steps = 1 + day.pick(6);
  for (int step = 0; step < steps; ++step) editorStep();
  // Mostly, so that days go on with hotkeys that other steps press.
  if (day.chance(60)) day.later("try editor button \"Restore Defaults\"");
  if (day.chance(80)) day.later("try editor close");
}

void UserWeather::editorStep() {
  static constexpr std::array keys = {"control+option+u", "shift+f5", "control+option+down",
                                      "escape",           "u",        "control+option+up"};
  switch (day.pick(5)) {
    case 0:
    case 1:
      return day.later(joined(
          {"try editor click \"", day.oneOf(std::array{"Increase", "Decrease"}), " brightness\""}));
    case 2:
    case 3:
      return day.later("key " + day.oneOf(keys));
    default:
      return day.later("try editor leave");
  }
}

/// Shift is pressed before the key or in its sweep, and let go in it or only after it.
void UserWeather::shiftInSweep() {
  const auto keys = day.oneOf(
      std::array{"control+option+up", "control+option+down", "brightness-up", "brightness-down"});
  const auto pause = [&] { return "+" + day.oneOf(std::array{"100ms", "430ms", "1.1s"}) + " "; };
  const bool isFirst = day.chance(30);
  const bool isLast = day.chance(30);
  day.later(isFirst ? "press shift" : "press " + keys);
  day.line(pause() + (isFirst ? "press " + keys : "press shift"));
  day.line(pause() + (isLast ? "release " + keys : "release shift"));
  day.line(pause() + (isLast ? "release shift" : "release " + keys));
}

void UserWeather::writeEnd() {
  if (!isEdited) return;
  choose("Change Hotkeys…");
  day.line("try editor button \"Restore Defaults\"");
  day.line("try editor close");
}

}  // namespace brivane
