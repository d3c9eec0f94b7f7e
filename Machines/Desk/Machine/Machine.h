#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Accessibility.h"
#include "Machines/Desk/Machine/Applications.h"
#include "Machines/Desk/Machine/Bus.h"
#include "Machines/Desk/Machine/Defaults.h"
#include "Machines/Desk/Machine/DefaultsSuite.h"
#include "Machines/Desk/Machine/Displays.h"
#include "Machines/Desk/Machine/EventTaps.h"
#include "Machines/Desk/Machine/Faults.h"
#include "Machines/Desk/Machine/Gamma.h"
#include "Machines/Desk/Machine/Hotkeys.h"
#include "Machines/Desk/Machine/Keyboard.h"
#include "Machines/Desk/Machine/Log.h"
#include "Machines/Desk/Machine/Notifications.h"
#include "Machines/Desk/Machine/Processes.h"
#include "Machines/Desk/Machine/Registry.h"
#include "Machines/Desk/Machine/Resources.h"
#include "Machines/Desk/Machine/Session.h"

namespace brivane {

/// What a desk's program uses of the real process.
struct DeskProcess {
  /// The program is a process of its own: signals ask it to end, and it sees what other processes
  /// do to the desk. Only for Runtimes of real time.
  bool isReal = false;
  /// The folder of the resource bundles; empty: no bundles.
  std::filesystem::path resources;
};

/// One program's view of a desk. Several machines may share one hardware.
class DeskMachine : public ResidentMachine {
 public:
  DeskMachine(std::unique_ptr<Runtime> machineRuntime, std::unique_ptr<SystemLog> systemLog,
              std::shared_ptr<DeskHardware> deskHardware, const DeskProcess& process = {});
  ~DeskMachine() override;

  Runtime& runtime() override { return *ownRuntime; }
  DisplaySystem& displays() override { return ownDisplays; }
  IORegistry& ioRegistry() override { return ownRegistry; }
  SymbolLoader& symbols() override { return ownSymbols; }
  GammaTables& gammaTables() override { return ownGammaTables; }
  UserDefaults& defaults() override { return ownDefaults; }
  DeskAccessibility& accessibility() override { return ownAccessibility; }
  ProcessRunner& processes() override { return ownProcesses; }
  Applications& applications() override { return ownApplications; }
  SystemLog& log() override { return ownLog; }
  Hotkeys& hotkeys() override { return ownHotkeys; }
  EventTaps& eventTaps() override { return ownEventTaps; }
  DeskKeyboard& keyboard() override { return ownKeyboard; }
  DeskNotifications& notifications() override { return ownNotifications; }
  DeskSession& session() override { return ownSession; }
  Resources& resources() override { return ownResources; }
  std::unique_ptr<DefaultsSuite> openDefaultsSuite(const std::string& name) override;
  Observation answerRequests(RemoteCommands& commands) override;

  /// What another program can ask for; null while the program answers nothing.
  RemoteCommands* remoteCommands() const { return answering; }

  DeskHardware& hardware() { return *sharedHardware; }

  /// Called on the calling thread for every seam call, with its name ("GammaTables.writeTable") and
  /// whether it is made to fail. Set it before the first call. Null: no trace.
  void setCallTrace(Faults::CallTrace callTrace);

  /// See `Faults::failNext`.
  void failNext(std::string_view call, std::int64_t times, std::int64_t spared) {
    faults->failNext(call, times, spared);
  }

  /// Ends the program like a signal that can't be caught: later calls by its objects fail without
  /// effect. The objects may be destroyed at any later time, the machine last. Main thread.
  void kill();

 private:
  // The settings wait by the Runtime's clock, so they are destroyed before it; everything that a
  // task on another queue may use is destroyed after it.
  const std::unique_ptr<SystemLog> targetLog;
  const std::shared_ptr<DeskHardware> sharedHardware;
  const std::shared_ptr<Faults> faults;
  RemoteCommands* answering = nullptr;
  DeskLog ownLog;
  DeskDisplays ownDisplays;
  DeskRegistry ownRegistry;
  DeskGammaTables ownGammaTables;
  DeskAccessibility ownAccessibility;
  DeskProcesses ownProcesses;
  DeskApplications ownApplications;
  DeskSymbols ownSymbols;
  DeskHotkeys ownHotkeys;
  DeskEventTaps ownEventTaps;
  DeskKeyboard ownKeyboard;
  DeskNotifications ownNotifications;
  DeskSession ownSession;
  DeskResources ownResources;
  const std::unique_ptr<Runtime> ownRuntime;
  DeskDefaults ownDefaults;
};

}  // namespace brivane
