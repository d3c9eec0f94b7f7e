#include "Machines/Desk/Faults.h"

#include <algorithm>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {

const std::vector<std::string_view>& Faults::calls() {
  static const std::vector<std::string_view> names = {
      "AVService.create",
      "AVService.readI2C",
      "AVService.writeI2C",
      "AccessibilityAccess.isTrusted",
      "AccessibilityAccess.requestTrust",
      "Applications.announce",
      "Applications.bundleIdentifier",
      "Applications.runningApplications",
      "DefaultsSuite.persistentDomain",
      "DisplayServices.canChangeBrightness",
      "DisplayServices.getBrightness",
      "DisplayServices.setBrightness",
      "DisplaySystem.isBuiltIn",
      "DisplaySystem.mainScreen",
      "DisplaySystem.onlineDisplayCount",
      "DisplaySystem.onlineDisplayList",
      "DisplaySystem.panelIdentity",
      "DisplaySystem.pointerPosition",
      "DisplaySystem.screens",
      "EventTap.setEnabled",
      "EventTapPort.createTap",
      "GammaTables.capacity",
      "GammaTables.readTable",
      "GammaTables.restoreCalibratedTables",
      "GammaTables.writeTable",
      "HotkeyPort.installHandler",
      "HotkeyPort.registerHotkey",
      "HotkeyPort.removeHandler",
      "HotkeyPort.unregisterHotkey",
      "IORegistry.allServices",
      "Keyboard.baseCharacter",
      "Keyboard.hasLayout",
      "Keyboard.isKeyDown",
      "Keyboard.modifierFlags",
      "ProcessRunner.run",
      "RegistryEntry.className",
      "RegistryEntry.name",
      "RegistryEntry.parent",
      "RegistryEntry.property",
      "RegistryIterator.next",
      "ResidentMachine.openDefaultsSuite",
      "Resources.preferredLanguages",
      "Resources.read",
      "Session.arguments",
      "Session.executablePath",
      "Session.fileExists",
      "Session.modificationSeconds",
      "Session.openURL",
      "SymbolLoader.find",
      "SymbolLoader.open",
      "SystemLog.write",
      "SystemNotifications.observeDidWake",
      "SystemNotifications.observeScreenParameters",
      "SystemNotifications.observeScreensDidWake",
      "SystemNotifications.observeTermination",
      "UserDefaults.object",
      "UserDefaults.remove",
      "UserDefaults.set",
  };
  return names;
}

bool Faults::strikes(std::string_view call, const Describe& what) {
  if (!std::ranges::binary_search(calls(), call)) {
    fatal("the call " + std::string(call) + " is not in the list of calls that can fail");
  }
  if (failsAlways) return true;
  const bool fails = isPlanned(call);
  if (callTrace) callTrace(call, fails);
  if (fails && tracer) {
    tracer->note([&] { return "fault " + std::string(call) + (what ? ": " + what() : ""); });
  }
  return fails;
}

/// Counts one occurrence of the call; whether the plan has it fail.
bool Faults::isPlanned(std::string_view call) {
  const auto planned = plan.find(call);
  if (planned == plan.end()) return false;
  const std::lock_guard lock(mutex);
  const auto occurrence = ++occurrences[planned->first];
  return planned->second.contains(occurrence);
}

}  // namespace brivane
