#include "Machines/Desk/Machine.h"

namespace brivane {

bool DeskAccessibility::isTrusted() {
  return !faults.strikes("AccessibilityAccess.isTrusted") && isGranted;
}

bool DeskAccessibility::requestTrust() {
  return !faults.strikes("AccessibilityAccess.requestTrust") && isGranted;
}

DeskMachine::DeskMachine(std::unique_ptr<Runtime> machineRuntime,
                         std::unique_ptr<SystemLog> systemLog,
                         std::shared_ptr<DeskHardware> deskHardware)
    : targetLog(std::move(systemLog)),
      faults(std::make_shared<Faults>(deskHardware->description().faults)),
      sharedHardware(std::move(deskHardware)),
      ownLog(*targetLog, *faults),
      ownDisplays(*sharedHardware, *faults),
      ownRegistry(sharedHardware->description(), faults),
      ownGammaTables(*sharedHardware, *faults),
      ownAccessibility(sharedHardware->description().isAccessibilityGranted, *faults),
      ownProcesses(*sharedHardware, *faults),
      ownApplications(sharedHardware->description(), *faults),
      ownSymbols(*sharedHardware, *faults, *machineRuntime),
      ownRuntime(std::move(machineRuntime)),
      ownDefaults(sharedHardware->openDomain("com.quorrel.brivane"), *faults, *targetLog) {}

}  // namespace brivane
