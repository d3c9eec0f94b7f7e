#include "Machines/Desk/Hardware/HardwareChanges.h"

#include "Machines/Desk/File/DisplaySection.h"

namespace brivane {
namespace {

std::string tracedPresence(ScreenPresence presence) {
  switch (presence) {
    case ScreenPresence::numbered:
      return "has a numbered screen";
    case ScreenPresence::unnumbered:
      return "has a screen without a number";
    case ScreenPresence::none:
      return "has no screen";
  }
  return "";
}

}  // namespace

HardwareChanges::HardwareChanges(AttachedDisplays& attachedDisplays, DeskMonitors& deskMonitors,
                                 GammaHardware& gammaHardware, DeskSystem& deskSystem,
                                 EventDelivery& eventDelivery, const Tracer& hardwareTracer)
    : displays(attachedDisplays),
      monitors(deskMonitors),
      gamma(gammaHardware),
      system(deskSystem),
      events(eventDelivery),
      tracer(hardwareTracer) {}

/// Traces and announces a change of the screens, if one `happened`; returns that.
bool HardwareChanges::screensChanged(bool happened, DisplayID display, const std::string& what) {
  if (!happened) return false;
  tracer.note([&] { return "display " + std::to_string(display) + " " + what; });
  events.announce(HardwareNotice::screenParameters);
  return true;
}

bool HardwareChanges::unplug(DisplayID display) {
  return screensChanged(displays.unplug(display), display, "unplugged");
}

bool HardwareChanges::plug(DisplayID display, std::optional<DisplayID> number) {
  if (displays.find(display)) return false;
  gamma.restoreCalibratedTable(display);
  return screensChanged(displays.plug(display, number), display,
                        number ? "plugged as " + std::to_string(*number) : "plugged");
}

bool HardwareChanges::setFrame(DisplayID display, const Rect& frame) {
  return screensChanged(
      displays.change(display, [&](AttachedDisplay& changed) { changed.frame = frame; }), display,
      "frame " + tracedPoint({frame.x, frame.y}) + " " + tracedPoint({frame.width, frame.height}));
}

bool HardwareChanges::setHeadroom(DisplayID display, double headroom) {
  return screensChanged(
      displays.change(display, [&](AttachedDisplay& changed) { changed.headroom = headroom; }),
      display, "headroom " + tracedNumber(headroom));
}

bool HardwareChanges::setScreenPresence(DisplayID display, ScreenPresence presence) {
  return screensChanged(
      displays.change(display, [&](AttachedDisplay& changed) { changed.screen = presence; }),
      display, tracedPresence(presence));
}

bool HardwareChanges::swapPorts(DisplayID one, DisplayID other) {
  return screensChanged(displays.swapPorts(one, other), one,
                        "swaps ports with " + std::to_string(other));
}

void HardwareChanges::setRegistryEntries(DisplayID display, RegistryEntries entries) {
  if (!displays.setRegistryEntries(display, entries)) return;
  tracer.note([&] {
    return "display " + std::to_string(display) + " registry " +
           std::string(registryEntriesName(entries));
  });
}

void HardwareChanges::sleepScreens() {
  for (const auto& display : displays.all()) monitors.fallAsleep(display.identifier);
}

void HardwareChanges::wakeScreens(Instant now) {
  for (const auto& display : displays.all()) monitors.wake(display.identifier, now);
  events.announce(HardwareNotice::screensDidWake);
}

void HardwareChanges::sleepSystem() {
  tracer.note([] { return std::string("system asleep"); });
  sleepScreens();
  system.setAsleep(true);
}

void HardwareChanges::wakeSystem(Instant now) {
  system.setAsleep(false);
  tracer.note([] { return std::string("system awake"); });
  events.announce(HardwareNotice::didWake);
  wakeScreens(now);
}

}  // namespace brivane
