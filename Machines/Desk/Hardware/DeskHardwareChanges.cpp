// What the user and the world do to a desk: plugging, sleep, monitor buttons.
#include <algorithm>

#include "Machines/Desk/File/FirmwareSection.h"
#include "Machines/Desk/File/SystemSection.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {
namespace {

std::string displayLine(DisplayID display, const std::string& what) {
  return "display " + std::to_string(display) + " " + what;
}

std::string monitorLine(DisplayID display, const std::string& what) {
  return "monitor " + std::to_string(display) + " " + what;
}

std::string tracedPoint(double x, double y) {
  return tracedNumber(x) + " " + tracedNumber(y);
}

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

void DeskHardware::announce(HardwareNotice notice) {
  ownTracer->note([&] { return "notice " + std::string(noticeName(notice)); });
  tell(events.add(notice));
}

/// Traces and announces a change of the screens, if one `happened`; returns that.
bool DeskHardware::screensChanged(bool happened, const std::string& line) {
  if (!happened) return false;
  ownTracer->note([&] { return line; });
  announce(HardwareNotice::screenParameters);
  return true;
}

bool DeskHardware::plug(const DisplayDescription& display) {
  const auto identifier = display.identifier;
  if (attached.find(identifier)) return false;
  {
    const std::lock_guard lock(mutex);
    parts.erase(identifier);
    parts.emplace(identifier, makeParts(display));
  }
  forgetGamma(identifier);
  return screensChanged(attached.plug(display), displayLine(identifier, "plugged"));
}

bool DeskHardware::unplug(DisplayID display) {
  return screensChanged(attached.unplug(display), displayLine(display, "unplugged"));
}

bool DeskHardware::replug(DisplayID display) {
  if (attached.find(display)) return false;
  forgetGamma(display);
  return screensChanged(attached.replug(display), displayLine(display, "plugged"));
}

bool DeskHardware::setFrame(DisplayID display, const Rect& frame) {
  return screensChanged(
      attached.change(display, [&](AttachedDisplay& changed) { changed.frame = frame; }),
      displayLine(display, "frame " + tracedPoint(frame.x, frame.y) + " " +
                               tracedPoint(frame.width, frame.height)));
}

bool DeskHardware::setHeadroom(DisplayID display, double headroom) {
  return screensChanged(
      attached.change(display, [&](AttachedDisplay& changed) { changed.headroom = headroom; }),
      displayLine(display, "headroom " + tracedNumber(headroom)));
}

bool DeskHardware::setScreenPresence(DisplayID display, ScreenPresence presence) {
  return screensChanged(
      attached.change(display, [&](AttachedDisplay& changed) { changed.screen = presence; }),
      displayLine(display, tracedPresence(presence)));
}

bool DeskHardware::swapPorts(DisplayID one, DisplayID other) {
  return screensChanged(attached.swapPorts(one, other),
                        displayLine(one, "swaps ports with " + std::to_string(other)));
}

bool DeskHardware::refuseGamma(DisplayID display, int times) {
  const std::lock_guard lock(mutex);
  auto* const found = findAttached(display);
  if (found == nullptr || !found->gamma) return false;
  return found->gamma->update([&](GammaState& state) {
    state.refusals = times;
    return true;
  });
}

template <typename Operation>
bool DeskHardware::changeMonitor(DisplayID display, const std::string& line,
                                 const Operation& operation) {
  const auto change = [&] {
    const std::lock_guard lock(mutex);
    auto* const found = find(display);
    if (found == nullptr || !found->monitor) return false;
    return found->monitor->update([&](MonitorState& state) {
      operation(*found->firmware, state);
      return true;
    });
  };
  if (!change()) return false;
  ownTracer->note([&] { return monitorLine(display, line); });
  return true;
}

bool DeskHardware::setLevelByButtons(DisplayID display, std::uint16_t level) {
  return changeMonitor(
      display, "buttons " + std::to_string(level),
      [&](const auto& firmware, auto& state) { firmware.setLevelByButtons(state, level); });
}

bool DeskHardware::setMood(DisplayID display, MonitorMood mood) {
  return changeMonitor(display, "mood " + std::string(moodName(mood)),
                       [&](const auto&, auto& state) { state.mood = mood; });
}

bool DeskHardware::fallAsleep(DisplayID display) {
  return changeMonitor(display, "asleep",
                       [](const auto& firmware, auto& state) { firmware.fallAsleep(state); });
}

bool DeskHardware::wake(DisplayID display, Instant now) {
  return changeMonitor(display, "awake",
                       [&](const auto& firmware, auto& state) { firmware.wake(state, now); });
}

void DeskHardware::sleepScreens() {
  for (const auto& display : *attached.all()) fallAsleep(display.identifier);
}

void DeskHardware::wakeScreens(Instant now) {
  for (const auto& display : *attached.all()) wake(display.identifier, now);
  announce(HardwareNotice::screensDidWake);
}

void DeskHardware::sleepSystem() {
  ownTracer->note([] { return std::string("system asleep"); });
  sleepScreens();
  replaceState(system, {true});
}

void DeskHardware::wakeSystem(Instant now) {
  replaceState(system, {false});
  ownTracer->note([] { return std::string("system awake"); });
  announce(HardwareNotice::didWake);
  wakeScreens(now);
}

void DeskHardware::movePointer(Point position) {
  replaceState(pointerState, position);
  ownTracer->note([&] { return "pointer " + tracedPoint(position.x, position.y); });
}

void DeskHardware::setAccessibilityGranted(bool granted) {
  replaceState(grant, {granted});
  ownTracer->note(
      [&] { return std::string("accessibility ") + (granted ? "granted" : "revoked"); });
}

void DeskHardware::setAppearance(DeskAppearance appearance) {
  replaceState(currentAppearance, appearance);
  ownTracer->note([&] { return "appearance " + std::string(appearanceName(appearance)); });
  announce(HardwareNotice::appearance);
}

}  // namespace brivane
