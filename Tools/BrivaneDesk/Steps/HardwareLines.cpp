#include "Tools/BrivaneDesk/Steps/HardwareLines.h"

#include "Machines/Common/Files/PropertyJson.h"
#include "Machines/Desk/File/DisplaySection.h"
#include "Machines/Desk/File/FirmwareSection.h"
#include "Machines/Desk/File/SystemSection.h"
#include "Tools/BrivaneDesk/Steps/GammaReading.h"

namespace brivane {
namespace {

std::string displayText(const DisplayDescription& display) {
  const Rect& frame = display.frame;
  std::string text = "at " + tracedPoint({frame.x, frame.y}) + ", " + tracedNumber(frame.width) +
                     " x " + tracedNumber(frame.height) + ", port " + display.port;
  if (display.headroom > 1) text += ", headroom " + tracedNumber(display.headroom);
  if (display.number != display.identifier) text += ", number " + std::to_string(display.number);
  if (display.registry.entries != RegistryEntries::all) {
    text += ", registry " + std::string(registryEntriesName(display.registry.entries));
  }
  if (display.screen == ScreenPresence::unnumbered) text += ", a screen without a number";
  if (display.screen == ScreenPresence::none) text += ", no screen";
  return text;
}

std::string monitorText(const MonitorState& monitor) {
  return "level " + std::to_string(monitor.shownLevel) + ", " + std::to_string(monitor.writeCount) +
         (monitor.writeCount == 1 ? " write" : " writes") + ", " +
         std::string(moodName(monitor.mood)) + (monitor.isAsleep ? ", asleep" : "");
}

void addDisplay(DeskHardware& hardware, DisplayID identifier,
                std::map<std::string, std::string>& lines) {
  const auto number = std::to_string(identifier);
  const auto display = hardware.displays.find(identifier);
  lines["display " + number] = display ? displayText(*display) : "unplugged";
  const auto monitor = hardware.monitors.state(identifier);
  if (monitor) lines["monitor " + number] = monitorText(*monitor);
  const auto gamma = readGamma(hardware, identifier);
  if (gamma) lines["gamma " + number] = gamma->text();
  const auto level = hardware.panels.level(identifier);
  if (level) lines["display-services " + number] = "level " + tracedNumber(*level);
}

}  // namespace

std::map<std::string, std::string> hardwareLines(DeskHardware& hardware) {
  std::map<std::string, std::string> lines;
  for (const auto& display : hardware.description.displays) {
    addDisplay(hardware, display.identifier, lines);
  }
  lines["pointer"] = tracedPoint(hardware.system.pointer());
  lines["hid-mapping"] = tracedMapping(hardware.system.hidMapping());
  lines["keyboard"] = std::to_string(hardware.input.keysDown().arrived.size()) + " keys down";
  lines["accessibility"] = hardware.system.isAccessibilityGranted() ? "granted" : "revoked";
  lines["appearance"] = appearanceName(hardware.system.appearance());
  lines["system"] = hardware.system.isAsleep() ? "asleep" : "awake";
  const auto settings = hardware.domains.contents("com.quorrel.brivane");
  for (const auto& [key, value] : settings.value_or(PropertyValue::Dictionary())) {
    lines["setting " + key] = jsonOfProperty(value);
  }
  return lines;
}

}  // namespace brivane
