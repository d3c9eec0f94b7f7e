#pragma once

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "Machines/Common/Files/JsonFileDefaults.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Linux/Accessibility.h"
#include "Machines/Linux/Applications.h"
#include "Machines/Linux/AutostartEntry.h"
#include "Machines/Linux/Backlight.h"
#include "Machines/Linux/DDC/Bus.h"
#include "Machines/Linux/DDC/Connectors.h"
#include "Machines/Linux/DDC/MissingAccess.h"
#include "Machines/Linux/DDC/Registry.h"
#include "Machines/Linux/DDC/SleepGate.h"
#include "Machines/Linux/Notifications.h"
#include "Machines/Linux/Processes.h"
#include "Machines/Linux/RemoteControl.h"
#include "Machines/Linux/Resources.h"
#include "Machines/Linux/Session.h"
#include "Machines/Linux/SessionBacklight.h"
#include "Machines/Linux/Symbols.h"
#include "Machines/Linux/System/Log.h"
#include "Machines/Linux/System/SessionBus.h"
#include "Machines/Linux/UserNotices.h"
#include "Machines/Linux/X11/Displays.h"
#include "Machines/Linux/X11/EventTaps.h"
#include "Machines/Linux/X11/Gamma.h"
#include "Machines/Linux/X11/Hotkeys.h"
#include "Machines/Linux/X11/Keyboard.h"
#include "Machines/Linux/X11/WindowSystem.h"
#include "Machines/Linux/X11/XConnection.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XKeymap.h"

namespace brivane {

/// A PC with an X server. The constructor touches neither hardware nor window system: each part
/// opens what it needs on first use.
class LinuxMachine : public ResidentMachine {
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
  Hotkeys& hotkeys() override { return hotkeyGrabs; }
  EventTaps& eventTaps() override { return brightnessKeys; }
  Keyboard& keyboard() override { return xKeyboard; }
  SystemNotifications& notifications() override { return announcements; }
  Session& session() override { return userSession; }
  Resources& resources() override { return bundles; }
  UserNotices* userNotices() override { return &desktopNotices; }
  /// Null for this program's own domain.
  std::unique_ptr<DefaultsSuite> openDefaultsSuite(const std::string& name) override;
  void noteMacCommand(std::string_view line) override;
  std::optional<std::string> advice() override;
  Observation answerRequests(RemoteCommands& commands) override {
    return remoteControl.answerRequests(commands);
  }

  /// For the frame.
  SharedWindowSystem& windowSystem() { return sharedWindowSystem; }

 private:
  void logMissingSystemBus();

  MissingAccess missingAccess;
  /// What to type instead of the Mac's command that was shown.
  std::optional<std::string> insteadOfShown;
  LinuxLog systemLog;
  SleepGate sleepGate;
  AutostartEntry entry{AutostartEntry::usualFolders()};
  XConnection connection;
  Connectors connectors;
  LinuxDisplays displaySystem{connection, connectors};
  LinuxGammaTables gamma{connection};
  LinuxBus bus{connectors, missingAccess, sleepGate, threads};
  SessionBacklight sessionBacklight;
  LinuxBacklight backlight{displaySystem,
                           [this](DisplayID display) { return displaySystem.connectorOf(display); },
                           missingAccess, sessionBacklight};
  BusSearch busSearch{connectors, sleepGate};
  LinuxIORegistry registry{connectors, busSearch, missingAccess.buses,
                           [this] { return displaySystem.describedOutputs(); }};
  LinuxSymbolLoader symbolLoader{bus, backlight};
  LinuxProcessRunner processRunner{missingAccess, entry};
  LinuxApplications runningPrograms;
  LinuxAccessibility grant;
  LinuxSession userSession{entry};
  LinuxResources bundles;
  /// Declared after everything that its queues' tasks use, so destroyed before it.
  ThreadRuntime threads;
  // Main thread only; destroyed before the Runtime, whose clock and queues they use.
  JsonFileDefaults settings;
  XEvents events;
  XKeymap keymap{events};
  LinuxKeyboard xKeyboard{events, keymap};
  LinuxHotkeys hotkeyGrabs{events, keymap, xKeyboard};
  LinuxEventTaps brightnessKeys{events, systemLog};
  LinuxWindowSystem sharedWindowSystem{{events, hotkeyGrabs, brightnessKeys, systemLog, settings}};
  LinuxNotifications announcements{events,
                                   threads,
                                   sleepGate,
                                   busSearch,
                                   [this] { settings.sync(); },
                                   [this] { logMissingSystemBus(); }};
  SessionBus sessionBus{threads};
  LinuxRemoteControl remoteControl{sessionBus, systemLog};
  LinuxUserNotices desktopNotices{sessionBus};
};

}  // namespace brivane
