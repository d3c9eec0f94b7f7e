#include <algorithm>
#include <array>
#include <cmath>

#include "Machines/Desk/File/DisplaySection.h"
#include "Machines/Desk/File/SystemSection.h"
#include "Tools/BrivaneDesk/Language/KeyNames.h"
#include "Tools/BrivaneDesk/Stage/Scene.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

StepProblem unless(bool happened, std::uint32_t display, const std::string& what) {
  if (happened) return std::nullopt;
  return "display " + std::to_string(display) + " " + what;
}

constexpr const char* notAttached = "is not plugged in";
constexpr const char* noGamma = "is not plugged in, or has no gamma table";
constexpr const char* noFirmware = "has no firmware";

constexpr const char* tooFar = "a coordinate that is not from -1000000 to 1000000";

/// Beyond the limit of desk files, which also holds for state files.
bool isTooFar(const Point& point) {
  constexpr double farthest = 1'000'000;
  return std::abs(point.x) > farthest || std::abs(point.y) > farthest;
}

BrightnessKey brightnessKey(const std::string& name) {
  return name == "brightness-up" ? BrightnessKey::up : BrightnessKey::down;
}

void pressOne(DeskKeyboard& keyboard, const std::string& name) {
  if (const auto code = keyCodeOf(name)) return keyboard.pressKey(*code);
  keyboard.pressBrightness(brightnessKey(name));
}

void releaseOne(DeskKeyboard& keyboard, const std::string& name) {
  if (const auto code = keyCodeOf(name)) return keyboard.releaseKey(*code);
  keyboard.releaseBrightness(brightnessKey(name));
}

bool isPressed(const DeskKeyboard& keyboard, const std::string& name) {
  const auto code = keyCodeOf(name);
  return code ? keyboard.isPressed(*code) : keyboard.isPressed(brightnessKey(name));
}

/// Rejects pressing a key that is down, which would have no effect.
StepProblem cannotPress(Scene& scene, const Keys& keys) {
  for (const auto& name : keys.names) {
    const bool isTwice = std::ranges::count(keys.names, name) > 1;
    const auto isUp = [&] { return !isPressed(scene.keyboard(), name); };
    if (isTwice || !scene.isSoOfKeys(isUp)) return "the key " + name + " is down already";
  }
  return std::nullopt;
}

void pressAll(Scene& scene, const Keys& keys) {
  for (const auto& name : keys.names) pressOne(scene.keyboard(), name);
}

void releaseAll(Scene& scene, const Keys& keys) {
  for (auto name = keys.names.rbegin(); name != keys.names.rend(); ++name) {
    releaseOne(scene.keyboard(), *name);
  }
}

StepProblem pressFor(Scene& scene, const Keys& keys, Microseconds duration) {
  if (auto problem = cannotPress(scene, keys)) return problem;
  scene.later(duration, [&scene, keys] { releaseAll(scene, keys); });
  pressAll(scene, keys);
  return std::nullopt;
}

StepProblem press(Scene& scene, const StepArguments& arguments) {
  const Keys& keys = arguments.get<Keys>(0);
  if (auto problem = cannotPress(scene, keys)) return problem;
  pressAll(scene, keys);
  return std::nullopt;
}

StepProblem release(Scene& scene, const StepArguments& arguments) {
  releaseAll(scene, arguments.get<Keys>(0));
  return std::nullopt;
}

StepProblem hold(Scene& scene, const StepArguments& arguments) {
  return pressFor(scene, arguments.get<Keys>(0), arguments.get<Microseconds>(1));
}

StepProblem key(Scene& scene, const StepArguments& arguments) {
  return pressFor(scene, arguments.get<Keys>(0), keyTapDuration);
}

StepProblem tapTimeout(Scene& scene, const StepArguments&) {
  scene.hardware().events.announce(TapTimeout{});
  return std::nullopt;
}

StepProblem pointerOnDisplay(Scene& scene, const StepArguments& arguments) {
  const auto display = scene.hardware().displays.find(arguments.display(0));
  if (!display) return unless(false, arguments.display(0), notAttached);
  const Rect& frame = display->frame;
  scene.hardware().system.movePointer({frame.x + frame.width / 2, frame.y + frame.height / 2});
  return std::nullopt;
}

StepProblem pointerAt(Scene& scene, const StepArguments& arguments) {
  if (isTooFar(arguments.get<Point>(0))) return tooFar;
  scene.hardware().system.movePointer(arguments.get<Point>(0));
  return std::nullopt;
}

/// Left of every screen.
StepProblem pointerNowhere(Scene& scene, const StepArguments&) {
  const auto displays = scene.hardware().displays.all();
  double left = 0;
  for (const auto& display : displays) left = std::min(left, display.frame.x);
  scene.hardware().system.movePointer({left - 1000, 0});
  return std::nullopt;
}

StepProblem unplug(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  return unless(scene.hardware().changes.unplug(display), display, notAttached);
}

StepProblem plug(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  return unless(scene.hardware().changes.plug(display), display, "was not unplugged before");
}

StepProblem plugAs(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const std::int64_t number = arguments.whole(1);
  if (number == 0) return "a display's number is not 0";
  const bool isPlugged = scene.hardware().changes.plug(display, static_cast<std::uint32_t>(number));
  return unless(isPlugged, display, "was not unplugged before, or another display has the number");
}

StepProblem changeRegistry(Scene& scene, const StepArguments& arguments) {
  const auto entries = registryEntriesOf(arguments.text(1));
  if (entries) scene.hardware().changes.setRegistryEntries(arguments.display(0), *entries);
  return std::nullopt;
}

StepProblem move(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto attached = scene.hardware().displays.find(display);
  if (!attached) return unless(false, display, notAttached);
  const auto& corner = arguments.get<Point>(1);
  if (isTooFar(corner)) return tooFar;
  const Rect frame{corner.x, corner.y, attached->frame.width, attached->frame.height};
  return unless(scene.hardware().changes.setFrame(display, frame), display, notAttached);
}

StepProblem swapPorts(Scene& scene, const StepArguments& arguments) {
  if (arguments.display(0) == arguments.display(1)) return "the same display twice";
  const bool isSwapped =
      scene.hardware().changes.swapPorts(arguments.display(0), arguments.display(1));
  return isSwapped ? StepProblem() : StepProblem("one of the two displays is not plugged in");
}

StepProblem announceScreens(Scene& scene, const StepArguments&) {
  scene.hardware().events.announce(HardwareNotice::screenParameters);
  return std::nullopt;
}

StepProblem numberOf(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto presence =
      arguments.text(1) == "present" ? ScreenPresence::numbered : ScreenPresence::unnumbered;
  return unless(scene.hardware().changes.setScreenPresence(display, presence), display,
                notAttached);
}

StepProblem changeHeadroom(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const double headroom = arguments.number(1);
  if (headroom < 1 || headroom > 64) return "a headroom that is not from 1 to 64";
  return unless(scene.hardware().changes.setHeadroom(display, headroom), display, notAttached);
}

StepProblem refuseGamma(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto times = static_cast<int>(arguments.whole(1));
  return unless(scene.hardware().gamma.refuse(display, times), display, noGamma);
}

StepProblem changeProfile(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const double exponent = arguments.number(1);
  if (exponent < smallestGammaExponent || exponent > largestGammaExponent) {
    return "an exponent that is not from 0.1 to 10";
  }
  return unless(scene.hardware().gamma.changeProfile(display, exponent), display, noGamma);
}

StepProblem scaleGammaByAnother(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const double factor = arguments.number(1);
  if (factor < 0 || factor > 16) return "a factor that is not from 0 to 16";
  return unless(scene.hardware().gamma.scaleByAnother(display, factor), display, noGamma);
}

constexpr auto moods = std::to_array<std::pair<std::string_view, MonitorMood>>(
    {{"answering", MonitorMood::answering},
     {"silent", MonitorMood::silent},
     {"busError", MonitorMood::busError},
     {"nullReply", MonitorMood::nullReply},
     {"garbled", MonitorMood::garbled},
     {"stale", MonitorMood::stale},
     {"shifted", MonitorMood::shifted},
     {"doubled", MonitorMood::doubled},
     {"forgetful", MonitorMood::forgetful}});

StepProblem mood(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const auto* const chosen = std::ranges::find(moods, std::string_view(arguments.text(1)),
                                               &std::pair<std::string_view, MonitorMood>::first);
  return unless(scene.hardware().monitors.setMood(display, chosen->second), display, noFirmware);
}

StepProblem buttons(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  const std::int64_t level = arguments.whole(1);
  if (level > 65535) return "a monitor's level is at most 65535";
  return unless(
      scene.hardware().monitors.setLevelByButtons(display, static_cast<std::uint16_t>(level)),
      display, noFirmware);
}

StepProblem monitorSleep(Scene& scene, const StepArguments& arguments) {
  const auto display = arguments.display(0);
  auto& hardware = scene.hardware();
  const bool happened = arguments.text(1) == "sleeps"
                            ? hardware.monitors.fallAsleep(display)
                            : hardware.monitors.wake(display, Instant(scene.now()));
  return unless(happened, display, noFirmware);
}

StepProblem sleepSystem(Scene& scene, const StepArguments&) {
  scene.hardware().changes.sleepSystem();
  return std::nullopt;
}

StepProblem wakeSystem(Scene& scene, const StepArguments&) {
  scene.hardware().changes.wakeSystem(Instant(scene.now()));
  return std::nullopt;
}

StepProblem screens(Scene& scene, const StepArguments& arguments) {
  if (arguments.text(0) == "sleep") {
    scene.hardware().changes.sleepScreens();
  } else {
    scene.hardware().changes.wakeScreens(Instant(scene.now()));
  }
  return std::nullopt;
}

StepProblem appearance(Scene& scene, const StepArguments& arguments) {
  scene.hardware().system.setAppearance(arguments.text(0) == "dark" ? DeskAppearance::dark
                                                                    : DeskAppearance::light);
  return std::nullopt;
}

StepProblem grant(Scene& scene, const StepArguments&) {
  scene.hardware().system.setAccessibilityGranted(true);
  return std::nullopt;
}

StepProblem revoke(Scene& scene, const StepArguments&) {
  scene.hardware().system.setAccessibilityGranted(false);
  return std::nullopt;
}

std::optional<HIDUsage> usageOf(Scene& scene, const Keys& keys) {
  if (keys.names.size() != 1) return std::nullopt;
  const auto& name = keys.names.front();
  if (const auto code = keyCodeOf(name)) return usageOfKey(*code);
  return scene.keyboard().usageOf(brightnessKey(name));
}

/// In place of the key's entry, if it has one.
StepProblem mapKey(Scene& scene, const StepArguments& arguments) {
  const auto source = usageOf(scene, arguments.get<Keys>(0));
  const auto destination = usageOf(scene, arguments.get<Keys>(1));
  if (!source || !destination) return "expected one key that can be mapped to one other key";
  auto mapping = scene.hardware().system.hidMapping();
  std::erase_if(mapping, [&](const auto& entry) { return entry.source == *source; });
  mapping.push_back({*source, *destination});
  scene.hardware().system.setHIDMapping(mapping);
  return std::nullopt;
}

StepProblem changeKeyTool(Scene& scene, const StepArguments& arguments) {
  auto tools = scene.hardware().system.tools();
  tools.hidUtil = toolPresenceOf(arguments.text(0)).value_or(tools.hidUtil);
  scene.hardware().system.setTools(tools);
  return std::nullopt;
}

StepProblem changeLaunchTool(Scene& scene, const StepArguments& arguments) {
  auto tools = scene.hardware().system.tools();
  tools.launchControl = toolPresenceOf(arguments.text(0)).value_or(tools.launchControl);
  scene.hardware().system.setTools(tools);
  return std::nullopt;
}

StepProblem clearMapping(Scene& scene, const StepArguments&) {
  scene.hardware().system.setHIDMapping({});
  return std::nullopt;
}

/// Other processes see stored values only; the log has the reason of a failure.
StepProblem changeSetting(Scene& scene, const std::string& key,
                          const std::optional<PropertyValue>& value) {
  constexpr auto domain = "com.quorrel.brivane";
  auto& hardware = scene.hardware();
  if (const auto settings = hardware.domains.open(domain); value) {
    settings->set(key, *value);
  } else {
    settings->remove(key);
  }
  const auto stored = hardware.domains.contents(domain).value_or(PropertyValue::Dictionary());
  const auto found = stored.find(key);
  const bool isStored =
      value ? found != stored.end() && found->second == *value : found == stored.end();
  if (isStored) return std::nullopt;
  return "the setting " + key + " was not kept";
}

StepProblem setSetting(Scene& scene, const StepArguments& arguments) {
  return changeSetting(scene, arguments.text(0), arguments.get<PropertyValue>(1));
}

StepProblem removeSetting(Scene& scene, const StepArguments& arguments) {
  return changeSetting(scene, arguments.text(0), std::nullopt);
}

}  // namespace

std::vector<HardwareStep> hardwareSteps() {
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
      {"plug DISPLAY as COUNT", plugAs},
      {"registry DISPLAY all|noPanel|none|panelTwice", changeRegistry},
      {"move DISPLAY to POINT", move},
      {"swap DISPLAY and DISPLAY", swapPorts},
      {"announce screens", announceScreens},
      {"number DISPLAY missing|present", numberOf},
      {"headroom DISPLAY NUMBER", changeHeadroom},
      {"refuse gamma DISPLAY COUNT times", refuseGamma},
      {"profile DISPLAY NUMBER", changeProfile},
      {"foreign gamma DISPLAY NUMBER", scaleGammaByAnother},
      {"mood DISPLAY answering|silent|busError|nullReply|garbled|stale|shifted|doubled|forgetful",
       mood},
      {"buttons DISPLAY COUNT", buttons},
      {"monitor DISPLAY sleeps|wakes", monitorSleep},
      {"sleep", sleepSystem},
      {"wake", wakeSystem},
      {"screens sleep|wake", screens},
      {"appearance light|dark", appearance},
      {"grant accessibility", grant},
      {"revoke accessibility", revoke},
      {"mapping cleared", clearMapping},
      {"mapping KEYS to KEYS", mapKey},
      {"hidutil present|missing|refusing|garbled|slow", changeKeyTool},
      {"launchctl present|missing|refusing|garbled|slow", changeLaunchTool},
      {"setting NAME = VALUE", setSetting},
      {"setting NAME removed", removeSetting},
  };
}

}  // namespace brivane
