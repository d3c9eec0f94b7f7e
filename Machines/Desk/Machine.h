#pragma once

#include <memory>

#include "BrivaneCore/Seams/Machine.h"
#include "Machines/Desk/Bus.h"
#include "Machines/Desk/Defaults.h"
#include "Machines/Desk/DeskHardware.h"
#include "Machines/Desk/Displays.h"
#include "Machines/Desk/Faults.h"
#include "Machines/Desk/Gamma.h"
#include "Machines/Desk/Log.h"
#include "Machines/Desk/Processes.h"
#include "Machines/Desk/Registry.h"

namespace brivane {

class DeskAccessibility : public AccessibilityAccess {
 public:
  DeskAccessibility(bool granted, Faults& machineFaults)
      : isGranted(granted), faults(machineFaults) {}

  bool isTrusted() override;
  bool requestTrust() override;

 private:
  const bool isGranted;
  Faults& faults;
};

/// One program's view of a desk. Several machines may share one hardware.
class DeskMachine : public Machine {
 public:
  DeskMachine(std::unique_ptr<Runtime> machineRuntime, std::unique_ptr<SystemLog> systemLog,
              std::shared_ptr<DeskHardware> deskHardware);

  Runtime& runtime() override { return *ownRuntime; }
  DisplaySystem& displays() override { return ownDisplays; }
  IORegistry& ioRegistry() override { return ownRegistry; }
  SymbolLoader& symbols() override { return ownSymbols; }
  GammaTables& gammaTables() override { return ownGammaTables; }
  UserDefaults& defaults() override { return ownDefaults; }
  AccessibilityAccess& accessibility() override { return ownAccessibility; }
  ProcessRunner& processes() override { return ownProcesses; }
  Applications& applications() override { return ownApplications; }
  SystemLog& log() override { return ownLog; }

  DeskHardware& hardware() { return *sharedHardware; }

 private:
  // The settings end before the Runtime, whose clock they wait by; everything that a task on
  // another queue may use ends after it.
  const std::unique_ptr<SystemLog> targetLog;
  const std::shared_ptr<Faults> faults;
  const std::shared_ptr<DeskHardware> sharedHardware;
  DeskLog ownLog;
  DeskDisplays ownDisplays;
  DeskRegistry ownRegistry;
  DeskGammaTables ownGammaTables;
  DeskAccessibility ownAccessibility;
  DeskProcesses ownProcesses;
  DeskApplications ownApplications;
  DeskSymbols ownSymbols;
  const std::unique_ptr<Runtime> ownRuntime;
  DeskDefaults ownDefaults;
};

}  // namespace brivane
