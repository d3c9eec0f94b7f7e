#pragma once

#include <memory>

#include "BrivaneCore/Seams/SystemNotifications.h"
#include "Machines/Common/TerminationSignals.h"
#include "Machines/Common/Topic.h"
#include "Machines/Desk/DeskHardware.h"
#include "Machines/Desk/Faults.h"

namespace brivane {

/// What happens to the hardware, announced to one program. An observation that is made to fail
/// never hears anything.
class DeskNotifications : public SystemNotifications {
 public:
  /// `processHasSignals`: whether the process's own signals ask it to end, beside `askToEnd`.
  DeskNotifications(DeskHardware& deskHardware, Faults& machineFaults, Runtime& machineRuntime,
                    bool processHasSignals);

  Observation observeScreenParameters(Task handler) override;
  Observation observeDidWake(Task handler) override;
  Observation observeScreensDidWake(Task handler) override;
  Observation observeTermination(Task handler) override;

  /// As a signal does.
  void askToEnd();

  /// Nothing is announced any more, and signals that were observed do nothing.
  void end();

 private:
  struct Topics {
    Topic screenParameters;
    Topic didWake;
    Topic screensDidWake;
    Topic termination;
  };

  using Signals = std::unique_ptr<TerminationSignals>;

  std::shared_ptr<Signals> waitForSignals();
  void announceSoon(Topic Topics::*topic);
  void announceNotice(HardwareNotice notice);

  Faults& faults;
  Runtime& runtime;
  const bool usesSignals;
  const std::shared_ptr<Topics> topics = std::make_shared<Topics>();
  /// Shared by all who observe the termination; empty once this has ended.
  std::weak_ptr<Signals> signals;
  Observation hardwareNotices;
};

}  // namespace brivane
