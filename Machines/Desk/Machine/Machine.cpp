#include "Machines/Desk/Machine/Machine.h"

namespace brivane {

DeskMachine::DeskMachine(std::unique_ptr<Runtime> machineRuntime,
                         std::unique_ptr<SystemLog> systemLog,
                         std::shared_ptr<DeskHardware> deskHardware, const DeskProcess& process)
    : targetLog(std::move(systemLog)),
      sharedHardware(std::move(deskHardware)),
      faults(std::make_shared<Faults>(sharedHardware->description.faults, sharedHardware->tracer)),
      ownLog(*targetLog, *faults, *sharedHardware->tracer),
      ownDisplays(sharedHardware->displays, sharedHardware->system, *faults),
      ownRegistry(sharedHardware->displays, faults),
      ownGammaTables(sharedHardware->gamma, sharedHardware->displays, *faults,
                     *sharedHardware->tracer),
      ownAccessibility(sharedHardware->system, *faults, *sharedHardware->tracer),
      ownProcesses(*sharedHardware, *faults, *machineRuntime),
      ownApplications(sharedHardware->description, sharedHardware->programs, *faults),
      ownSymbols(*sharedHardware, *faults, *machineRuntime),
      ownHotkeys(sharedHardware->input.hotkeys, *faults, *sharedHardware->tracer),
      ownEventTaps(*sharedHardware, faults),
      ownKeyboard(*sharedHardware, *faults, *machineRuntime),
      ownNotifications(*sharedHardware, *faults, *machineRuntime, process.isReal),
      ownSession(sharedHardware->description, *faults, *sharedHardware->tracer),
      ownResources(sharedHardware->description, *faults, process.resources),
      ownRuntime(std::move(machineRuntime)),
      ownDefaults(sharedHardware->domains.open("com.quorrel.brivane"), *faults, ownLog,
                  *sharedHardware->tracer) {}

DeskMachine::~DeskMachine() {
  // The wait for signals is a task, and the Runtime's destructor waits for its tasks.
  ownNotifications.end();
}

std::unique_ptr<DefaultsSuite> DeskMachine::openDefaultsSuite(const std::string& name) {
  if (faults->strikes("ResidentMachine.openDefaultsSuite")) return nullptr;
  // A program can't open its own domain as a suite.
  if (name == sharedHardware->description.bundleIdentifier) return nullptr;
  return std::make_unique<DeskDefaultsSuite>(sharedHardware->domains, *faults);
}

Observation DeskMachine::answerRequests(RemoteCommands& commands) {
  answering = &commands;
  return {this, [](DeskMachine* machine) { machine->answering = nullptr; }};
}

void DeskMachine::setCallTrace(Faults::CallTrace callTrace) {
  faults->setCallTrace(std::move(callTrace));
}

void DeskMachine::kill() {
  faults->failAlways();
  ownNotifications.end();
  ownHotkeys.releaseAll();
  ownEventTaps.releaseAll();
  ownApplications.end();
  sharedHardware->tracer->note([] { return std::string("program killed"); });
}

}  // namespace brivane
