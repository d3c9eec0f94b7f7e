#include "Machines/Desk/LiveDesk/DeskControls.h"

#include <algorithm>
#include <array>

#include "Machines/Desk/File/FirmwareSection.h"

namespace brivane {
namespace {

constexpr std::array offeredMoods = {
    MonitorMood::answering, MonitorMood::silent,  MonitorMood::busError,
    MonitorMood::nullReply, MonitorMood::garbled, MonitorMood::stale,
    MonitorMood::shifted,   MonitorMood::doubled, MonitorMood::forgetful};
constexpr std::array headrooms = {1.0, 1.6, 2.0, 4.0};

/// The number tells twins apart.
std::string titleOf(const DisplayDescription& display) {
  return "[" + std::to_string(display.identifier) + "] " + display.name;
}

/// A tenth of the monitor's range, like a monitor's own menu.
void step(DeskHardware& hardware, DisplayID display, int direction) {
  const auto described = hardware.displays.find(display);
  const auto monitor = hardware.monitors.state(display);
  if (!described || !monitor) return;
  const auto& firmware = described->firmware;
  if (!firmware) return;
  const int maximum = firmware->maximum;
  const int change = direction * std::max(1, maximum / 10);
  const int level = std::clamp(monitor->shownLevel + change, 0, maximum);
  hardware.monitors.setLevelByButtons(display, static_cast<std::uint16_t>(level));
}

LiveChoice moodChoice(DeskHardware& hardware, DisplayID display, MonitorMood mood) {
  LiveChoice choice{"Mood", {}, 0, {}};
  for (const auto option : offeredMoods) choice.options.emplace_back(moodName(option));
  choice.chosen =
      static_cast<std::size_t>(std::ranges::find(offeredMoods, mood) - offeredMoods.begin());
  choice.choose = [&hardware, display](std::size_t option) {
    hardware.monitors.setMood(display, offeredMoods.at(option));
  };
  return choice;
}

LiveChoice headroomChoice(DeskHardware& hardware, DisplayID display, double headroom) {
  std::vector<double> values(headrooms.begin(), headrooms.end());
  if (std::ranges::find(values, headroom) == values.end()) values.push_back(headroom);
  std::ranges::sort(values);
  LiveChoice choice{"Headroom", {}, 0, {}};
  for (const double value : values) choice.options.push_back(tracedNumber(value));
  choice.chosen = static_cast<std::size_t>(std::ranges::find(values, headroom) - values.begin());
  choice.choose = [&hardware, display, values](std::size_t option) {
    hardware.changes.setHeadroom(display, values.at(option));
  };
  return choice;
}

std::string monitorStatus(const MonitorState& monitor, std::uint16_t maximum) {
  return std::to_string(monitor.shownLevel) + " of " + std::to_string(maximum) + ", " +
         std::to_string(monitor.writeCount) + (monitor.writeCount == 1 ? " write" : " writes") +
         (monitor.isAsleep ? ", asleep" : "");
}

void addMonitor(LiveControls& strip, DeskHardware& hardware, const DisplayDescription& display,
                const Runtime& runtime) {
  const auto monitor = hardware.monitors.state(display.identifier);
  const auto& firmware = display.firmware;
  if (!monitor || !firmware) return;
  const auto identifier = display.identifier;
  strip.status.push_back(monitorStatus(*monitor, firmware->maximum));
  strip.controls.push_back(
      LiveButton{"−", [&hardware, identifier] { step(hardware, identifier, -1); }, "Darker"});
  strip.controls.push_back(
      LiveButton{"+", [&hardware, identifier] { step(hardware, identifier, 1); }, "Brighter"});
  strip.controls.push_back(moodChoice(hardware, identifier, monitor->mood));
  if (monitor->isAsleep) {
    strip.controls.push_back(LiveButton{
        "Wake",
        [&hardware, &runtime, identifier] { hardware.monitors.wake(identifier, runtime.now()); },
        {}});
  } else {
    strip.controls.push_back(LiveButton{
        "Sleep", [&hardware, identifier] { hardware.monitors.fallAsleep(identifier); }, {}});
  }
}

bool areAllAsleep(DeskHardware& hardware) {
  bool anyAsleep = false;
  for (const auto& display : hardware.displays.all()) {
    const auto monitor = hardware.monitors.state(display.identifier);
    if (monitor && !monitor->isAsleep) return false;
    anyAsleep = anyAsleep || monitor;
  }
  return anyAsleep;
}

LiveButton sleepButton(DeskHardware& hardware, const Runtime& runtime) {
  if (!hardware.system.isAsleep()) {
    return {"Sleep", [&hardware] { hardware.changes.sleepSystem(); }, {}};
  }
  return {"Wake", [&hardware, &runtime] { hardware.changes.wakeSystem(runtime.now()); }, {}};
}

LiveButton screensButton(DeskHardware& hardware, const Runtime& runtime) {
  if (!areAllAsleep(hardware)) {
    return {"Screens Off", [&hardware] { hardware.changes.sleepScreens(); }, {}};
  }
  return {"Screens On", [&hardware, &runtime] { hardware.changes.wakeScreens(runtime.now()); }, {}};
}

LiveChoice appearanceChoice(DeskHardware& hardware) {
  return {
      "Appearance",
      {"light", "dark"},
      hardware.system.appearance() == DeskAppearance::dark ? std::size_t{1} : std::size_t{0},
      [&hardware](std::size_t option) {
        hardware.system.setAppearance(option == 1 ? DeskAppearance::dark : DeskAppearance::light);
      }};
}

LiveChoice grantChoice(DeskHardware& hardware) {
  return {
      "Accessibility",
      {"revoked", "granted"},
      hardware.system.isAccessibilityGranted() ? std::size_t{1} : std::size_t{0},
      [&hardware](std::size_t option) { hardware.system.setAccessibilityGranted(option == 1); }};
}

}  // namespace

LiveControls monitorControls(DeskHardware& hardware, DisplayID display, const Runtime& runtime) {
  const auto described = hardware.displays.find(display);
  if (!described) return {};
  LiveControls strip;
  strip.title = titleOf(*described);
  addMonitor(strip, hardware, *described, runtime);
  if (const auto level = hardware.panels.level(display)) {
    strip.status.push_back("Level " + tracedNumber(*level));
  }
  strip.controls.push_back(headroomChoice(hardware, display, described->headroom));
  return strip;
}

LiveControls machineControls(DeskHardware& hardware, const Runtime& runtime) {
  LiveControls panel{"Desk", {}, {}};
  panel.status.emplace_back(hardware.system.isAsleep() ? "Asleep" : "Awake");
  panel.controls.push_back(sleepButton(hardware, runtime));
  if (!hardware.system.isAsleep()) panel.controls.push_back(screensButton(hardware, runtime));
  panel.controls.push_back(appearanceChoice(hardware));
  panel.controls.push_back(grantChoice(hardware));
  // Last, so that no other control moves when a display is plugged in or out.
  for (const auto& display : hardware.description.displays) {
    if (hardware.displays.find(display.identifier)) continue;
    const auto plug = [&hardware, identifier = display.identifier] {
      hardware.changes.plug(identifier);
    };
    panel.controls.push_back(LiveButton{"Plug In " + titleOf(display), plug, {}});
  }
  return panel;
}

}  // namespace brivane
