#pragma once

#include <memory>
#include <optional>

#include "BrivaneCore/Seams/SystemNotifications.h"
#include "Machines/Common/Processes/TerminationSignals.h"
#include "Machines/Common/Topic.h"
#include "Machines/Linux/SleepGate.h"
#include "Machines/Linux/SleepWatch.h"
#include "Machines/Linux/X11/XEvents.h"

namespace brivane {

/// What X, logind and the process's signals announce. X announces one change of screens several
/// times, and that the screens woke only when its own screen saver or DPMS had put them to sleep.
/// It must end before the Runtime, after all who observe.
class LinuxNotifications : public SystemNotifications {
 public:
  /// All must outlive this. As soon as anybody observes the machine's wake, its sleep waits until
  /// the gate is shut and `saveEverything` has returned; `sayThatBusIsMissing` is called when
  /// neither is heard of for want of a system bus.
  LinuxNotifications(XEvents& itsEvents, Runtime& machineRuntime, SleepGate& itsSleepGate,
                     Task saveEverything, Task sayThatBusIsMissing);

  Observation observeScreenParameters(Task handler) override;
  Observation observeDidWake(Task handler) override;
  Observation observeScreensDidWake(Task handler) override;
  Observation observeTermination(Task handler) override;

 private:
  struct Topics {
    Topic screenParameters;
    Topic didWake;
    Topic screensDidWake;
    Topic termination;
  };

  void listenToScreens();
  void listenToSleep();
  void handle(const xcb_generic_event_t& event);
  void sleepChanged(bool goesToSleep);

  XEvents& events;
  Runtime& runtime;
  SleepGate& sleepGate;
  const Task saveBeforeSleep;
  const Task busIsMissing;
  const std::shared_ptr<Topics> topics = std::make_shared<Topics>();
  /// Shared by all who observe the termination.
  std::weak_ptr<TerminationSignals> signals;
  std::optional<SleepWatch> sleep;
  Observation screens;
};

}  // namespace brivane
