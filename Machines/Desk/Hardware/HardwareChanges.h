#pragma once

#include "Machines/Desk/Hardware/DeskMonitors.h"
#include "Machines/Desk/Hardware/GammaHardware.h"

namespace brivane {

/// Changes of a desk's displays and sleep by the user or the world, announced as the system would.
/// Those with a result return false, and change nothing, when the display is not plugged in. Main
/// thread.
class HardwareChanges {
 public:
  HardwareChanges(AttachedDisplays& attachedDisplays, DeskMonitors& deskMonitors,
                  GammaHardware& gammaHardware, DeskSystem& deskSystem,
                  EventDelivery& eventDelivery, const Tracer& hardwareTracer);

  bool unplug(DisplayID display);
  /// Restores the display as it was unplugged, but with the calibrated gamma table, and with
  /// another number in the window system if there is one; false when it is not unplugged, or
  /// another display has the number.
  bool plug(DisplayID display, std::optional<DisplayID> number = std::nullopt);
  bool setFrame(DisplayID display, const Rect& frame);
  bool setHeadroom(DisplayID display, double headroom);
  bool setScreenPresence(DisplayID display, ScreenPresence presence);
  bool swapPorts(DisplayID one, DisplayID other);
  /// What the registry has of a display, plugged in or not, which nothing announces.
  void setRegistryEntries(DisplayID display, RegistryEntries entries);

  /// All monitors fall asleep or wake. Waking the screens is announced; waking the machine
  /// announces the machine first, then the screens.
  void sleepScreens();
  void wakeScreens(Instant now);
  void sleepSystem();
  void wakeSystem(Instant now);

 private:
  bool screensChanged(bool happened, DisplayID display, const std::string& what);

  AttachedDisplays& displays;
  DeskMonitors& monitors;
  GammaHardware& gamma;
  DeskSystem& system;
  EventDelivery& events;
  const Tracer& tracer;
};

}  // namespace brivane
