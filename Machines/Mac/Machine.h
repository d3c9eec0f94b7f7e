#pragma once

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "Machines/Mac/Accessibility.h"
#include "Machines/Mac/AppKitServices.h"
#include "Machines/Mac/Applications.h"
#include "Machines/Mac/Defaults.h"
#include "Machines/Mac/Displays.h"
#include "Machines/Mac/EventTaps.h"
#include "Machines/Mac/Gamma.h"
#include "Machines/Mac/Hotkeys.h"
#include "Machines/Mac/Keyboard.h"
#include "Machines/Mac/Log.h"
#include "Machines/Mac/Notifications.h"
#include "Machines/Mac/Processes.h"
#include "Machines/Mac/Registry.h"
#include "Machines/Mac/Resources.h"
#include "Machines/Mac/Runtime/Runtime.h"
#include "Machines/Mac/Session.h"
#include "Machines/Mac/Symbols.h"

namespace brivane {

/// A Mac. The constructor touches neither hardware nor window system.
class MacMachine : public ResidentMachine {
 public:
  explicit MacMachine(std::unique_ptr<AppKitServices> services);

  Runtime& runtime() override { return loopAndQueues; }
  DisplaySystem& displays() override { return displaySystem; }
  IORegistry& ioRegistry() override { return registry; }
  SymbolLoader& symbols() override { return symbolLoader; }
  GammaTables& gammaTables() override { return gamma; }
  UserDefaults& defaults() override { return settings; }
  AccessibilityAccess& accessibility() override { return grant; }
  ProcessRunner& processes() override { return processRunner; }
  Applications& applications() override { return runningPrograms; }
  SystemLog& log() override { return systemLog; }
  Hotkeys& hotkeys() override { return carbonHotkeys; }
  EventTaps& eventTaps() override { return taps; }
  Keyboard& keyboard() override { return sessionKeyboard; }
  SystemNotifications& notifications() override { return announcements; }
  Session& session() override { return userSession; }
  Resources& resources() override { return bundles; }
  /// Null for this program's own domain.
  std::unique_ptr<DefaultsSuite> openDefaultsSuite(const std::string& name) override;

 private:
  const std::unique_ptr<AppKitServices> appKit;
  MacLog systemLog;
  MacDisplays displaySystem{*appKit};
  MacGammaTables gamma;
  MacIORegistry registry;
  MacSymbolLoader symbolLoader;
  MacProcessRunner processRunner;
  MacApplications runningPrograms{*appKit};
  MacAccessibility grant;
  MacSession userSession{*appKit};
  MacResources bundles;
  MacDefaults settings{systemLog};
  /// Declared after everything that its queues' tasks use, so destroyed before it.
  MacRuntime loopAndQueues;
  // Main thread only.
  MacKeyboard sessionKeyboard{*appKit};
  MacHotkeys carbonHotkeys;
  MacEventTaps taps{*appKit};
  MacNotifications announcements{*appKit, loopAndQueues};
};

}  // namespace brivane
