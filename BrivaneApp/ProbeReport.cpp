#include "BrivaneApp/ProbeReport.h"

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "BrivaneApp/BrightnessStack.h"
#include "BrivaneApp/RunningInstance.h"
#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Policy/CursorRouter.h"

namespace brivane {
namespace {

std::string yesOrNo(bool answer) {
  return answer ? "yes" : "no";
}

class ProbeReport {
 public:
  ProbeReport(Machine& probedMachine, std::ostream& standardOutput)
      : machine(probedMachine), out(standardOutput) {}

  void printAll() {
    print("Brivane probe");
    printRunningInstance();
    print("  DDC transport available: " + yesOrNo(stack.registry->ddcAvailable()));
    print("  Accessibility granted:   " + yesOrNo(machine.accessibility().isTrusted()));
    printKeyRelay();
    print("");
    const auto online = stack.registry->onlineDisplayIDs();
    if (online.empty()) return print("  No displays reported by CoreGraphics.");
    for (const DisplayID display : online) printDisplay(display);
    print("");
    printCursorDisplay();
  }

 private:
  /// Prints line by line, because each silent monitor takes its time.
  void print(std::string_view line) { out << line << std::endl; }

  void printRunningInstance() {
    const auto process = otherRunningInstance(machine.applications());
    if (!process) return;
    print("  NOTE: Brivane is already running (pid " + std::to_string(*process) + ").");
    print("        It holds the DDC handles, so a display it is driving may still");
    print("        report no response below. For a clean reading, quit it first:");
    constexpr std::string_view command =
        "        launchctl bootout gui/$(id -u)/com.quorrel.brivane";
    print(command);
    machine.noteMacCommand(command);
    print("");
  }

  void printKeyRelay() {
    const RelaySettings settings(machine.defaults());
    const RelayKey up = settings.relayUpKey();
    const RelayKey down = settings.relayDownKey();
    const bool isEnabled = settings.systemBrightnessKeysEnabled();
    HIDUtilKeyMapping mapping(HIDUtilKeyMapping::defaultRunner(machine.processes(), machine.log()));
    isMappingInForce = mapping.isApplied(up, down);
    print("  System brightness keys: " + std::string(isEnabled ? "enabled" : "disabled") +
          " — mapping " + (isMappingInForce ? "in force" : "NOT in force") + " via " +
          std::string(up.name) + "/" + std::string(down.name));
    if (!isEnabled || isMappingInForce) return;
    print("        The keys are still with macOS. Run Brivane --probe again");
    print("        with the app running, or check the log for a hidutil failure.");
  }

  void printDisplay(DisplayID display) {
    print("  " + named(display));
    print("      built-in: " + yesOrNo(displays.isBuiltIn(display)));
    const PanelIdentity panel = displays.panelIdentity(display);
    print("      vendor=" + std::to_string(panel.vendor) + " model=" + std::to_string(panel.model) +
          " serial=" + std::to_string(panel.serial));
    printControl(display);
  }

  void printControl(DisplayID display) {
    if (stack.controller->backend(display) == BrightnessBackendKind::appleDisplay) {
      printAppleControl(display);
    } else if (const auto reading = stack.controller->probe(display)) {
      printDDCControl(display, *reading);
    } else if (displays.isBuiltIn(display)) {
      print("      control: macOS native (built-in panel)");
    } else {
      printNoControl();
    }
  }

  void printAppleControl(DisplayID display) {
    const auto percent = stack.appleDisplays->read(display);
    print("      control: Apple display via DisplayServices -> " +
          (percent ? std::to_string(*percent) + "%" : "unreadable"));
    print("      DDC:     n/a (Apple panels do not implement DDC/CI)");
    if (!displays.isBuiltIn(display)) return;
    print(std::string("      keys:    ") +
          (isMappingInForce ? "driven by Brivane (DisplayServices)" : "pass through to macOS"));
  }

  void printDDCControl(DisplayID display, VCPReading reading) {
    constexpr Percent unknown = -1;
    const Percent percent = stack.controller->brightness(display).value_or(unknown);
    print("      control: DDC/CI -> " + std::to_string(percent) + "%");
    print("      DDC:     current=" + std::to_string(reading.current) +
          " max=" + std::to_string(reading.max));
  }

  void printNoControl() {
    print("      control: NONE — brightness keys will pass through to macOS");
    print("      DDC:     no response. If this is a third-party monitor,");
    print("               check for a DDC/CI setting in its on-screen menu,");
    print("               and note that DisplayLink adapters block DDC entirely.");
  }

  void printCursorDisplay() {
    const auto display = CursorRouter(displays).displayUnderCursor();
    if (!display) return print("  Cursor display could not be determined.");
    print("  Cursor is on: " + named(*display));
  }

  std::string named(DisplayID display) {
    return "[" + std::to_string(display) + "] " + stack.registry->localizedName(display);
  }

  Machine& machine;
  std::ostream& out;
  DisplaySystem& displays = machine.displays();
  BrightnessStack stack{machine};
  bool isMappingInForce = false;
};

}  // namespace

void printProbeReport(Machine& machine, std::ostream& out) {
  ProbeReport(machine, out).printAll();
}

}  // namespace brivane
