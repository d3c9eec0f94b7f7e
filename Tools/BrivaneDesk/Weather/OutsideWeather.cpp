#include "Tools/BrivaneDesk/Weather/OutsideWeather.h"

#include "Machines/Desk/File/FaultCalls.h"

namespace brivane {
namespace {

constexpr std::array combinations = {
    "control+option+up", "control+option+down", "control+option+u", "f1", "f2", "f19", "f20",
    "shift+f20"};

}  // namespace

std::string OutsideWeather::deskKeys() {
  return day.chance(50) ? ",\n \"launchAgent\": {\"installed\": true}" : "";
}

void OutsideWeather::writeStep() {
  switch (day.pick(10)) {
    case 0:
    case 1:
      return changeSetting();
    case 2:
    case 3:
      return changeGamma();
    case 4:
      return takeHotkey();
    case 5:
      return changeGrant();
    case 6:
      return stall();
    case 7:
      return day.later("tap timeout");
    case 8:
      return failAtStart();
    default:
      return failCalls();
  }
}

/// Of all types; numbers that no hotkey has would end the program, as they must.
void OutsideWeather::changeSetting() {
  static constexpr std::array switches = {"SubZeroDimming",
                                          "BrightenPastMaximum",
                                          "SoftwareBrightening",
                                          "CustomHotkeysEnabled",
                                          "SystemBrightnessKeysEnabled",
                                          "KeepFunctionKeyFallback",
                                          "HoldHotkeysWhileMenuIsOpen",
                                          "VerboseKeyLog"};
  static constexpr std::array others = {"BrightnessUpKeyCode", "BrightnessUpModifiers",
                                        "BrightnessDownKeyCode", "PromptedForAccessibilityBuild"};
  static constexpr std::array values = {"true", "true",    "false", "1",  "0",         "\"yes\"",
                                        "\"\"", "\"off\"", "-0.5",  "[]", "{\"a\": 1}"};
  static constexpr std::array relayCodes = {"105", "12", "-1", "4294967376", "80", "\"80\""};
  static constexpr std::array wrongTypes = {"\"126\"", "[126]", "{\"$date\": 3}"};
  const auto set = [&](const std::string& name, const std::string& value) {
    day.later(joined({"setting ", name, day.chance(25) ? " removed" : " = " + value}));
  };
  switch (day.pick(6)) {
    case 0:
      return set(day.oneOf(others), day.oneOf(wrongTypes));
    case 1:
      return set(day.oneOf(std::array{"BrightnessKeyRelayUp", "BrightnessKeyRelayDown"}),
                 day.oneOf(relayCodes));
    default:
      return set(day.oneOf(switches), day.oneOf(values));
  }
}

void OutsideWeather::changeGamma() {
  const auto number = std::to_string(day.anyDisplay().number);
  if (day.chance(50)) {
    day.later(
        joined({"try profile ", number, " ", day.oneOf(std::array{"0.8", "1", "1.2", "2.2"})}));
  } else {
    day.later(joined(
        {"try foreign gamma ", number, " ", day.oneOf(std::array{"0.5", "0.9", "1", "1.3"})}));
  }
}

/// The program asks for its hotkeys when it starts; a hotkey that it has is refused to others.
void OutsideWeather::takeHotkey() {
  const auto combination = day.oneOf(combinations);
  day.later("kill");
  day.line("try hotkey " + combination + " taken");
  day.later("start");
  if (day.chance(50)) day.later("try hotkey " + combination + " free");
}

void OutsideWeather::changeGrant() {
  day.later(joined({day.chance(50) ? "grant" : "revoke", " accessibility"}));
}

/// At any time, or in a sweep.
void OutsideWeather::stall() {
  const auto stall = "stall " + day.oneOf(std::array{"60ms", "300ms", "900ms", "2.5s"});
  if (day.chance(30)) return day.later(stall);
  const auto keys = day.oneOf(std::array{"control+option+up", "control+option+down"});
  day.later("press " + keys);
  day.line(joined({"+", day.oneOf(std::array{"100ms", "400ms", "800ms"}), " ", stall}));
  day.line(joined({"+", day.oneOf(std::array{"0s", "50ms", "300ms"}), " release ", keys}));
}

/// More often one that a program goes on making. Never the one without which the program stores
/// levels of a panel 0.0.0, which the judge doesn't allow.
std::string OutsideWeather::anyCall() {
  static constexpr std::array frequent = {
      "AVService.create",       "AVService.readI2C",
      "AVService.writeI2C",     "GammaTables.writeTable",
      "GammaTables.readTable",  "UserDefaults.set",
      "Hotkeys.registerHotkey", "EventTaps.createTap",
      "ProcessRunner.run",      "DisplayServices.setBrightness"};
  if (day.chance(60)) return day.oneOf(frequent);
  auto calls = faultCalls();
  std::erase(calls, "DisplaySystem.panelIdentity");
  return std::string(calls.at(static_cast<std::size_t>(day.pick(static_cast<int>(calls.size())))));
}

void OutsideWeather::failCalls() {
  const auto call = anyCall();
  day.later(joined({"fail ", call, " ", day.oneOf(std::array{"1", "2", "20"}), " times"}));
  endFailing(call);
}

/// Calls of a start, such as the registration of observers; a program that has missed them works
/// only in part until it is started again.
void OutsideWeather::failAtStart() {
  const auto call = anyCall();
  day.later("kill");
  day.line(joined({"fail ", call, " ", day.oneOf(std::array{"1", "3", "1000"}), " times"}));
  day.line("start");
  endFailing(call);
}

/// Something happens meanwhile; then, mostly, the program runs anew, and all rules hold again.
void OutsideWeather::endFailing(const std::string& call) {
  hasFailed = true;
  day.later(joined(
      {"hold ", day.oneOf(std::array{"control+option+up", "brightness-down"}), " for 900ms"}));
  if (day.chance(50)) day.later("announce screens");
  if (day.chance(30)) day.later("sleep");
  day.line("+1s wake");
  day.line("+1s fail " + call + " 0 times");
  if (day.chance(30)) return;
  day.later("kill");
  day.later("start");
}

void OutsideWeather::writeEnd() {
  for (const auto* const combination : combinations) {
    day.line("try hotkey " + std::string(combination) + " free");
  }
  if (!hasFailed) return;
  day.line("kill");
  day.line("+1s start");
}

}  // namespace brivane
