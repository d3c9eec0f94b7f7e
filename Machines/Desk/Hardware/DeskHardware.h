#pragma once

#include <memory>

#include "Machines/Desk/Hardware/DeskInput.h"
#include "Machines/Desk/Hardware/DisplayPanels.h"
#include "Machines/Desk/Hardware/HardwareChanges.h"
#include "Machines/Desk/Hardware/RunningPrograms.h"
#include "Machines/Desk/Hardware/SettingsDomains.h"

namespace brivane {

/// The simulated hardware: the desk file's description and the current state, in parts. It outlives
/// every program that uses it; several machines may share one object, several processes one folder.
class DeskHardware {
 public:
  explicit DeskHardware(DeskDescription deskDescription,
                        std::unique_ptr<StateFolder> stateFolder = nullptr)
      : description(std::move(deskDescription)), folder(std::move(stateFolder)) {}

  /// The desk as its file describes it, with the initial state of what can change.
  const DeskDescription description;
  /// Holds the state; null: the state is in memory.
  const std::unique_ptr<StateFolder> folder;
  /// Shared with objects that may outlive the hardware.
  const std::shared_ptr<Tracer> tracer = std::make_shared<Tracer>();

 private:
  AttachedDisplays attached{description.displays, folder.get()};

 public:
  const AttachedDisplays& displays = attached;
  EventDelivery events{folder.get(), *tracer};
  DeskSystem system{description, folder.get(), events, *tracer};
  DeskMonitors monitors{description, folder.get(), displays, system, *tracer};
  GammaHardware gamma{description, folder.get(), displays, *tracer};
  DisplayPanels panels{description, folder.get(), displays, *tracer};
  DeskInput input{description, folder.get(), events};
  SettingsDomains domains{description, folder.get()};
  RunningPrograms programs{folder.get(), *tracer};
  HardwareChanges changes{attached, monitors, gamma, system, events, *tracer};
};

}  // namespace brivane
