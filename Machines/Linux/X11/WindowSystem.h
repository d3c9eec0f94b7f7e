#pragma once

#include "Machines/Common/Files/JsonFileDefaults.h"
#include "Machines/Common/Frame/SharedWindowSystem.h"
#include "Machines/Linux/System/Log.h"
#include "Machines/Linux/X11/EventTaps.h"
#include "Machines/Linux/X11/Hotkeys.h"
#include "Machines/Linux/X11/XEvents.h"

namespace brivane {

/// Passes a frame's key events to the machine, and handles the loss of the X server.
class LinuxWindowSystem : public SharedWindowSystem {
 public:
  /// All must outlive this.
  struct Parts {
    XEvents& events;
    LinuxHotkeys& hotkeys;
    LinuxEventTaps& brightnessKeys;
    LinuxLog& log;
    JsonFileDefaults& settings;
  };
  explicit LinuxWindowSystem(const Parts& machineParts) : parts(machineParts) {}

  bool take(const WindowKey& key) override;
  void keyboardIsBack() override;
  Observation observeServerGone(Task handler) override;
  void logLostServer() override;
  void saveBeforeExit() override;

 private:
  const Parts parts;
};

}  // namespace brivane
