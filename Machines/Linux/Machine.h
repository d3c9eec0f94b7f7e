#pragma once

#include "BrivaneCore/Seams/Machine.h"
#include "Machines/Common/JsonFileDefaults.h"
#include "Machines/Common/ThreadRuntime.h"
#include "Machines/Linux/Accessibility.h"
#include "Machines/Linux/Applications.h"
#include "Machines/Linux/Backlight.h"
#include "Machines/Linux/Bus.h"
#include "Machines/Linux/Connectors.h"
#include "Machines/Linux/Displays.h"
#include "Machines/Linux/Findings.h"
#include "Machines/Linux/Gamma.h"
#include "Machines/Linux/Log.h"
#include "Machines/Linux/Processes.h"
#include "Machines/Linux/Registry.h"
#include "Machines/Linux/Symbols.h"
#include "Machines/Linux/XConnection.h"

namespace brivane {

/// A PC with an X server. Making one asks nothing of hardware or window system: each part opens
/// what it needs when it is first used.
class LinuxMachine : public Machine {
 public:
  LinuxMachine();

  Runtime& runtime() override { return threads; }
  DisplaySystem& displays() override { return displaySystem; }
  IORegistry& ioRegistry() override { return registry; }
  SymbolLoader& symbols() override { return symbolLoader; }
  GammaTables& gammaTables() override { return gamma; }
  UserDefaults& defaults() override { return settings; }
  AccessibilityAccess& accessibility() override { return grant; }
  ProcessRunner& processes() override { return processRunner; }
  Applications& applications() override { return runningPrograms; }
  SystemLog& log() override { return systemLog; }
  std::optional<std::string> advice() override;

 private:
  Findings findings;
  LinuxLog systemLog;
  XConnection connection;
  LinuxDisplays displaySystem{connection};
  LinuxGammaTables gamma{connection};
  Connectors connectors;
  LinuxBus bus{connectors, findings};
  LinuxBacklight backlight{displaySystem, findings};
  LinuxIORegistry registry{connectors};
  LinuxSymbolLoader symbolLoader{bus, backlight};
  LinuxProcessRunner processRunner{findings};
  LinuxApplications runningPrograms;
  LinuxAccessibility grant;
  /// Below everything that its queues' tasks use.
  ThreadRuntime threads;
  /// Main thread only; it still needs the clock when it ends.
  JsonFileDefaults settings;
};

}  // namespace brivane
