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
  /// Restores the display as it was unplugged, but with the calibrated gamma table; false when it
  /// is not unplugged.
  bool plug(DisplayID display);
  bool setFrame(DisplayID display, const Rect& frame);
  bool setHeadroom(DisplayID display, double headroom);
  bool setScreenPresence(DisplayID display, ScreenPresence presence);
  bool swapPorts(DisplayID one, DisplayID other);

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
