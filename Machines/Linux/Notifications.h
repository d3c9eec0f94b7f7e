#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "BrivaneCore/Seams/SystemNotifications.h"
#include "Machines/Common/TerminationSignals.h"
#include "Machines/Common/Topic.h"
#include "Machines/Linux/SleepWatch.h"
#include "Machines/Linux/XEvents.h"

namespace brivane {

/// What X, logind and the process's signals announce. X announces one change of screens several
/// times, and that the screens woke only when its own screen saver or DPMS had put them to sleep.
/// It must end before the Runtime, after all who observe.
class LinuxNotifications : public SystemNotifications {
 public:
  /// Both must outlive this. `systemSleeps` is true while the machine goes to sleep, sleeps and
  /// wakes, as soon as anybody observes its wake; `sleepBegins` is called when it becomes true.
  LinuxNotifications(XEvents& itsEvents, Runtime& machineRuntime, std::atomic<bool>& systemSleeps,
                     Task sleepBegins);

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
  std::atomic<bool>& isAsleep;
  const Task onSleepBegins;
  const std::shared_ptr<Topics> topics = std::make_shared<Topics>();
  /// Shared by all who observe the termination.
  std::weak_ptr<TerminationSignals> signals;
  std::optional<SleepWatch> sleep;
  Observation screens;
};

}  // namespace brivane
