#include "BrivaneApp/Diagnostics.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <string_view>

#include "BrivaneApp/BrightnessStack.h"
#include "BrivaneApp/ProbeReport.h"
#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "BrivaneCore/Policy/CursorRouter.h"
#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

constexpr std::string_view usage = "usage: Brivane --set <0-100>";

/// The integer right after the first "--set"; nothing if there is none.
std::optional<Percent> requestedPercent(const std::vector<std::string>& arguments) {
  const auto option = std::find(arguments.begin(), arguments.end(), "--set");
  if (option == arguments.end() || option + 1 == arguments.end()) return std::nullopt;
  return parseInteger(*(option + 1));
}

}  // namespace

Diagnostics::Diagnostics(Machine& diagnosedMachine, std::ostream& standardOutput)
    : machine(diagnosedMachine), out(standardOutput) {}

bool Diagnostics::fail(std::string_view line) {
  print(line);
  return false;
}

void Diagnostics::print(std::string_view line) {
  out << line << std::endl;
}

void Diagnostics::runProbe() {
  printProbeReport(machine, out);
}

bool Diagnostics::runSet(const std::vector<std::string>& arguments) {
  const auto percent = requestedPercent(arguments);
  if (!percent) return fail(usage);
  const auto display = CursorRouter(machine.displays()).displayUnderCursor();
  if (!display) return fail("Could not determine which display the cursor is on.");
  BrightnessStack stack(machine);
  const std::string name = stack.registry->localizedName(*display);
  // This mode is for DDC/CI alone, not for display services.
  const bool speaksDDC =
      stack.controller->backend(*display) != BrightnessBackendKind::appleDisplay &&
      stack.controller->brightness(*display).has_value();
  const bool isSet = speaksDDC && stack.controller->setBrightness(*percent, *display);
  print(isSet ? "Set " + name + " to " + std::to_string(*percent) + "%"
              : "Failed to set " + name + " — no DDC channel.");
  return isSet;
}

void Diagnostics::runUnmap() {
  HIDUtilKeyMapping mapping(HIDUtilKeyMapping::defaultRunner(machine.processes(), machine.log()));
  switch (mapping.revert()) {
    case RevertOutcome::removed:
      print("Brightness key mapping cleared. The keys are back with macOS.");
      printStopReapplyingAdvice();
      break;
    case RevertOutcome::nothingToRemove:
      print("No Brivane entries were in the HID mapping — nothing to clear.");
      print("Anything else in it was left alone. If the brightness keys are");
      print("still not working, the cause is not this app's mapping.");
      printStopReapplyingAdvice();
      break;
    case RevertOutcome::failed:
      print("Could not run /usr/bin/hidutil. A reboot also clears the mapping.");
      break;
  }
}

void Diagnostics::printStopReapplyingAdvice() {
  print("A running Brivane re-applies the mapping within a minute unless the");
  print("feature is switched off. Turn off \"Use System Brightness Keys\" in the");
  print("menu, or, equivalently:");
  constexpr std::string_view command =
      "  defaults write com.quorrel.brivane SystemBrightnessKeysEnabled -bool false";
  print(command);
  machine.noteMacCommand(command);
}

}  // namespace brivane
