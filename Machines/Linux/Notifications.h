#pragma once

#include <memory>
#include <optional>
#include <string>

#include "BrivaneCore/Seams/SystemNotifications.h"
#include "Machines/Common/Processes/TerminationSignals.h"
#include "Machines/Common/Topic.h"
#include "Machines/Linux/DDC/BusSearch.h"
#include "Machines/Linux/DDC/SleepGate.h"
#include "Machines/Linux/DeviceWatch.h"
#include "Machines/Linux/SleepWatch.h"
#include "Machines/Linux/X11/XEvents.h"

namespace brivane {

/// Announcements by X, logind, udev and the process's signals. X announces one change of screens
/// several times, and the screens' waking only after its own screen saver or DPMS. Destroy it
/// before the Runtime, after all observers.
class LinuxNotifications : public SystemNotifications {
 public:
  /// All must outlive this. While the machine's wake is observed, sleep is delayed until the gate
  /// is shut and `saveEverything` has returned. `logMissingBus` is called when there is no
  /// system bus to learn of sleep and wake.
  LinuxNotifications(XEvents& xEvents, Runtime& machineRuntime, SleepGate& machineSleepGate,
                     const BusSearch& machineBusSearch, Task saveEverything, Task logMissingBus);

  Observation observeScreenParameters(Task handler) override;
  Observation observeDidWake(Task handler) override;
  Observation observeScreensDidWake(Task handler) override;
  Observation observeMonitorBuses(Task handler) override;
  Observation observeKeyboards(Task handler) override;
  Observation observeTermination(Task handler) override;

 private:
  struct Topics {
    Topic screenParameters;
    Topic didWake;
    Topic screensDidWake;
    Topic monitorBuses;
    Topic keyboards;
    Topic termination;
  };

  void listenToScreens();
  void listenToSleep();
  void listenToDevices();
  void handle(const xcb_generic_event_t& event);
  void sleepChanged(bool goesToSleep);
  void deviceAppeared(DeviceWatch::Kind kind, const std::string& name);

  XEvents& events;
  Runtime& runtime;
  SleepGate& sleepGate;
  const BusSearch& busSearch;
  const Task saveBeforeSleep;
  const Task busIsMissing;
  const std::shared_ptr<Topics> topics = std::make_shared<Topics>();
  /// Shared by all observers of the termination.
  std::weak_ptr<TerminationSignals> signals;
  std::optional<SleepWatch> sleep;
  std::optional<DeviceWatch> devices;
  Observation screens;
};

}  // namespace brivane
