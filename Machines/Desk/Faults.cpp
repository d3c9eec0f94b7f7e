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
      "Applications.bundleIdentifier",
      "Applications.runningApplications",
      "DisplayServices.canChangeBrightness",
      "DisplayServices.getBrightness",
      "DisplayServices.setBrightness",
      "DisplaySystem.isBuiltIn",
      "DisplaySystem.onlineDisplayCount",
      "DisplaySystem.onlineDisplayList",
      "DisplaySystem.panelIdentity",
      "DisplaySystem.pointerPosition",
      "DisplaySystem.screens",
      "GammaTables.capacity",
      "GammaTables.readTable",
      "GammaTables.restoreCalibratedTables",
      "GammaTables.writeTable",
      "IORegistry.allServices",
      "ProcessRunner.run",
      "RegistryEntry.className",
      "RegistryEntry.name",
      "RegistryEntry.parent",
      "RegistryEntry.property",
      "RegistryIterator.next",
      "SymbolLoader.find",
      "SymbolLoader.open",
      "SystemLog.write",
      "UserDefaults.object",
      "UserDefaults.remove",
      "UserDefaults.set",
  };
  return names;
}

bool Faults::strikes(std::string_view call) {
  if (std::ranges::find(calls(), call) == calls().end()) {
    fatal("the call " + std::string(call) + " is not in the list of calls that can fail");
  }
  const auto planned = plan.find(call);
  if (planned == plan.end()) return false;
  const std::lock_guard lock(mutex);
  const auto occurrence = ++occurrences[planned->first];
  return planned->second.contains(occurrence);
}

}  // namespace brivane
