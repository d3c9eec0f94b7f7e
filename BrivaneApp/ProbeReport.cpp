// The report of the probe mode: plain text, meant to be pasted into a request for help. It is
// printed line by line, because every monitor that doesn't answer takes its time.
#include <ostream>

#include "BrivaneApp/Diagnostics.h"
#include "BrivaneApp/RunningInstance.h"
#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Policy/CursorRouter.h"

namespace brivane {
namespace {

std::string yesOrNo(bool answer) {
  return answer ? "yes" : "no";
}

std::string bracketed(DisplayID display) {
  return "[" + std::to_string(display) + "] ";
}

}  // namespace

void Diagnostics::runProbe() {
  print("Brivane probe");
  printRunningInstance();
  BrightnessStack stack(machine);
  print("  DDC transport available: " + yesOrNo(stack.registry->ddcAvailable()));
  print("  Accessibility granted:   " + yesOrNo(machine.accessibility().isTrusted()));
  const KeyRelay relay = readKeyRelay();
  printKeyRelay(relay);
  print("");
  const auto displays = stack.registry->onlineDisplayIDs();
  if (displays.empty()) return print("  No displays reported by CoreGraphics.");
  for (const DisplayID display : displays) printDisplay(stack, display, relay.isInForce);
  print("");
  printCursorDisplay(stack);
}

void Diagnostics::printRunningInstance() {
  const auto process = otherRunningInstance(machine.applications());
  if (!process) return;
  print("  NOTE: Brivane is already running (pid " + std::to_string(*process) + ").");
  print("        It holds the DDC handles, so a display it is driving may still");
  print("        report no response below. For a clean reading, quit it first:");
  print("        launchctl bootout gui/$(id -u)/com.quorrel.brivane");
  print("");
}

Diagnostics::KeyRelay Diagnostics::readKeyRelay() {
  const RelaySettings settings(machine.defaults());
  const RelayKey up = settings.relayUpKey();
  const RelayKey down = settings.relayDownKey();
  const bool isEnabled = settings.systemBrightnessKeysEnabled();
  HIDUtilKeyMapping mapping(HIDUtilKeyMapping::defaultRunner(machine.processes(), machine.log()));
  return {up, down, isEnabled, mapping.isApplied(up, down)};
}

void Diagnostics::printKeyRelay(const KeyRelay& relay) {
  print("  System brightness keys: " + std::string(relay.isEnabled ? "enabled" : "disabled") +
        " — mapping " + (relay.isInForce ? "in force" : "NOT in force") + " via " +
        std::string(relay.up.name) + "/" + std::string(relay.down.name));
  if (!relay.isEnabled || relay.isInForce) return;
  print("        The keys are still with macOS. Run Brivane --probe again");
  print("        with the app running, or check the log for a hidutil failure.");
}

void Diagnostics::printDisplay(BrightnessStack& stack, DisplayID display, bool mappingInForce) {
  DisplaySystem& displays = machine.displays();
  print("  " + bracketed(display) + stack.registry->localizedName(display));
  print("      built-in: " + yesOrNo(displays.isBuiltIn(display)));
  const PanelIdentity panel = displays.panelIdentity(display);
  print("      vendor=" + std::to_string(panel.vendor) + " model=" + std::to_string(panel.model) +
        " serial=" + std::to_string(panel.serial));
  printControl(stack, display, mappingInForce);
}

void Diagnostics::printControl(BrightnessStack& stack, DisplayID display, bool mappingInForce) {
  if (stack.controller->backend(display) == BrightnessBackendKind::appleDisplay) {
    printAppleControl(stack, display, mappingInForce);
  } else if (const auto reading = stack.controller->probe(display)) {
    printDDCControl(stack, display, *reading);
  } else if (machine.displays().isBuiltIn(display)) {
    print("      control: macOS native (built-in panel)");
  } else {
    printNoControl();
  }
}

void Diagnostics::printAppleControl(BrightnessStack& stack, DisplayID display,
                                    bool mappingInForce) {
  const auto percent = stack.appleDisplays->read(display);
  print("      control: Apple display via DisplayServices -> " +
        (percent ? std::to_string(*percent) + "%" : "unreadable"));
  print("      DDC:     n/a (Apple panels do not implement DDC/CI)");
  if (!machine.displays().isBuiltIn(display)) return;
  print(std::string("      keys:    ") +
        (mappingInForce ? "driven by Brivane (DisplayServices)" : "pass through to macOS"));
}

void Diagnostics::printDDCControl(BrightnessStack& stack, DisplayID display, VCPReading reading) {
  constexpr Percent unknown = -1;
  const Percent percent = stack.controller->brightness(display).value_or(unknown);
  print("      control: DDC/CI -> " + std::to_string(percent) + "%");
  print("      DDC:     current=" + std::to_string(reading.current) +
        " max=" + std::to_string(reading.max));
}

void Diagnostics::printNoControl() {
  print("      control: NONE — brightness keys will pass through to macOS");
  print("      DDC:     no response. If this is a third-party monitor,");
  print("               check for a DDC/CI setting in its on-screen menu,");
  print("               and note that DisplayLink adapters block DDC entirely.");
}

void Diagnostics::printCursorDisplay(BrightnessStack& stack) {
  const auto display = CursorRouter(machine.displays()).displayUnderCursor();
  if (!display) return print("  Cursor display could not be determined.");
  print("  Cursor is on: " + bracketed(*display) + stack.registry->localizedName(*display));
}

}  // namespace brivane
