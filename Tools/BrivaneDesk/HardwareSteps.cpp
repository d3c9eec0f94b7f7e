#include <algorithm>
#include <array>

#include "Tools/BrivaneDesk/KeyNames.h"
#include "Tools/BrivaneDesk/Stage.h"
#include "Tools/BrivaneDesk/StepTable.h"

namespace brivane {
namespace {

StepProblem unless(bool happened, std::uint32_t display, const std::string& what) {
  if (happened) return std::nullopt;
  return "display " + std::to_string(display) + " " + what;
}

constexpr const char* notAttached = "is not plugged in";
constexpr const char* noFirmware = "is not plugged in, or has no firmware";

void pressOne(DeskKeyboard& keyboard, const std::string& name) {
  if (const auto code = keyCodeOf(name)) return keyboard.pressKey(*code);
  keyboard.pressBrightness(name == "brightness-up" ? BrightnessKey::up : BrightnessKey::down);
}

void releaseOne(DeskKeyboard& keyboard, const std::string& name) {
  if (const auto code = keyCodeOf(name)) return keyboard.releaseKey(*code);
  keyboard.releaseBrightness(name == "brightness-up" ? BrightnessKey::up : BrightnessKey::down);
}

void pressAll(Stage& stage, const Keys& keys) {
  for (const auto& name : keys.names) pressOne(stage.keyboard(), name);
}

void releaseAll(Stage& stage, const Keys& keys) {
  for (auto name = keys.names.rbegin(); name != keys.names.rend(); ++name) {
    releaseOne(stage.keyboard(), *name);
  }
}

void pressFor(Stage& stage, const Keys& keys, Microseconds duration) {
  stage.plan(stage.now() + duration, Stage::Rank::consequence,
             [&stage, keys] { releaseAll(stage, keys); });
  pressAll(stage, keys);
}

StepProblem press(Stage& stage, const StepArguments& arguments) {
  pressAll(stage, arguments.get<Keys>(0));
  return std::nullopt;
}

StepProblem release(Stage& stage, const StepArguments& arguments) {
  releaseAll(stage, arguments.get<Keys>(0));
  return std::nullopt;
}

StepProblem hold(Stage& stage, const StepArguments& arguments) {
  pressFor(stage, arguments.get<Keys>(0), arguments.get<Microseconds>(1));
  return std::nullopt;
}

StepProblem key(Stage& stage, const StepArguments& arguments) {
  pressFor(stage, arguments.get<Keys>(0), keyTapDuration);
  return std::nullopt;
}

StepProblem tapTimeout(Stage& stage, const StepArguments&) {
  stage.hardware().input().taps.disableByTimeout();
  return std::nullopt;
}

StepProblem pointerOnDisplay(Stage& stage, const StepArguments& arguments) {
  const auto display = stage.hardware().display(arguments.display(0));
  if (!display) return unless(false, arguments.display(0), notAttached);
  const Rect& frame = display->frame;
  stage.hardware().movePointer({frame.x + frame.width / 2, frame.y + frame.height / 2});
  return std::nullopt;
}

StepProblem pointerAt(Stage& stage, const StepArguments& arguments) {
  stage.hardware().movePointer(arguments.get<Point>(0));
  return std::nullopt;
}

/// Left of every screen.
StepProblem pointerNowhere(Stage& stage, const StepArguments&) {
  const auto displays = stage.hardware().displays();
  double left = 0;
  for (const auto& display : *displays) left = std::min(left, display.frame.x);
  stage.hardware().movePointer({left - 1000, 0});
  return std::nullopt;
}

StepProblem unplug(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  return unless(stage.hardware().unplug(display), display, notAttached);
}

StepProblem plug(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  return unless(stage.hardware().replug(display), display, "was not unplugged before");
}

StepProblem move(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto attached = stage.hardware().display(display);
  if (!attached) return unless(false, display, notAttached);
  const auto& corner = arguments.get<Point>(1);
  const Rect frame{corner.x, corner.y, attached->frame.width, attached->frame.height};
  return unless(stage.hardware().setFrame(display, frame), display, notAttached);
}

StepProblem swapPorts(Stage& stage, const StepArguments& arguments) {
  if (arguments.display(0) == arguments.display(1)) return "the same display twice";
  if (stage.hardware().swapPorts(arguments.display(0), arguments.display(1))) return std::nullopt;
  return "one of the two displays is not plugged in";
}

StepProblem announceScreens(Stage& stage, const StepArguments&) {
  stage.hardware().announce(HardwareNotice::screenParameters);
  return std::nullopt;
}

StepProblem numberOf(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto presence =
      arguments.text(1) == "present" ? ScreenPresence::numbered : ScreenPresence::unnumbered;
  return unless(stage.hardware().setScreenPresence(display, presence), display, notAttached);
}

StepProblem changeHeadroom(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const double headroom = arguments.number(1);
  if (headroom < 1 || headroom > 64) return "a headroom that is not from 1 to 64";
  return unless(stage.hardware().setHeadroom(display, headroom), display, notAttached);
}

StepProblem refuseGamma(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto times = static_cast<int>(arguments.whole(1));
  return unless(stage.hardware().refuseGamma(display, times), display,
                "is not plugged in, or has no gamma table");
}

constexpr auto moods =
    std::to_array<std::pair<std::string_view, MonitorMood>>({{"answering", MonitorMood::answering},
                                                             {"silent", MonitorMood::silent},
                                                             {"busError", MonitorMood::busError},
                                                             {"nullReply", MonitorMood::nullReply},
                                                             {"garbled", MonitorMood::garbled},
                                                             {"stale", MonitorMood::stale},
                                                             {"shifted", MonitorMood::shifted},
                                                             {"doubled", MonitorMood::doubled}});

StepProblem mood(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto* const chosen = std::ranges::find(moods, std::string_view(arguments.text(1)),
                                               &std::pair<std::string_view, MonitorMood>::first);
  return unless(stage.hardware().setMood(display, chosen->second), display, noFirmware);
}

StepProblem buttons(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const std::int64_t level = arguments.whole(1);
  if (level > 65535) return "a monitor's level is at most 65535";
  return unless(stage.hardware().setLevelByButtons(display, static_cast<std::uint16_t>(level)),
                display, noFirmware);
}

StepProblem monitorSleep(Stage& stage, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  auto& hardware = stage.hardware();
  const bool happened = arguments.text(1) == "sleeps"
                            ? hardware.fallAsleep(display)
                            : hardware.wake(display, Instant(stage.now()));
  return unless(happened, display, noFirmware);
}

StepProblem sleepSystem(Stage& stage, const StepArguments&) {
  stage.hardware().sleepSystem();
  return std::nullopt;
}

StepProblem wakeSystem(Stage& stage, const StepArguments&) {
  stage.hardware().wakeSystem(Instant(stage.now()));
  return std::nullopt;
}

StepProblem screens(Stage& stage, const StepArguments& arguments) {
  if (arguments.text(0) == "sleep") {
    stage.hardware().sleepScreens();
  } else {
    stage.hardware().wakeScreens(Instant(stage.now()));
  }
  return std::nullopt;
}

StepProblem appearance(Stage& stage, const StepArguments& arguments) {
  stage.hardware().setAppearance(arguments.text(0) == "dark" ? DeskAppearance::dark
                                                             : DeskAppearance::light);
  return std::nullopt;
}

StepProblem grant(Stage& stage, const StepArguments&) {
  stage.hardware().setAccessibilityGranted(true);
  return std::nullopt;
}

StepProblem revoke(Stage& stage, const StepArguments&) {
  stage.hardware().setAccessibilityGranted(false);
  return std::nullopt;
}

StepProblem clearMapping(Stage& stage, const StepArguments&) {
  stage.hardware().setHIDMapping({});
  return std::nullopt;
}

}  // namespace

std::vector<StepKind> hardwareSteps() {
  return {
      {"press KEYS", press},
      {"release KEYS", release},
      {"hold KEYS for DURATION", hold},
      {"key KEYS", key},
      {"tap timeout", tapTimeout},
      {"pointer DISPLAY", pointerOnDisplay},
      {"pointer POINT", pointerAt},
      {"pointer nowhere", pointerNowhere},
      {"unplug DISPLAY", unplug},
      {"plug DISPLAY", plug},
      {"move DISPLAY to POINT", move},
      {"swap DISPLAY and DISPLAY", swapPorts},
      {"announce screens", announceScreens},
      {"number DISPLAY missing|present", numberOf},
      {"headroom DISPLAY NUMBER", changeHeadroom},
      {"refuse gamma DISPLAY COUNT times", refuseGamma},
      {"mood DISPLAY answering|silent|busError|nullReply|garbled|stale|shifted|doubled", mood},
      {"buttons DISPLAY COUNT", buttons},
      {"monitor DISPLAY sleeps|wakes", monitorSleep},
      {"sleep", sleepSystem},
      {"wake", wakeSystem},
      {"screens sleep|wake", screens},
      {"appearance light|dark", appearance},
      {"grant accessibility", grant},
      {"revoke accessibility", revoke},
      {"mapping cleared", clearMapping},
  };
}

}  // namespace brivane
