#pragma once

#include <memory>
#include <set>
#include <string_view>

#include "BrivaneCore/Seams/SystemNotifications.h"
#include "Machines/Common/Processes/TerminationSignals.h"
#include "Machines/Common/Topic.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"
#include "Machines/Desk/State/FolderWatch.h"

namespace brivane {

/// The hardware's events, announced to one program. In a real process, events of other processes
/// are included from the first observation on, so a program without observations pays nothing. An
/// observation that is made to fail never fires.
class DeskNotifications : public SystemNotifications {
 public:
  /// See `DeskProcess`.
  DeskNotifications(DeskHardware& deskHardware, Faults& machineFaults, Runtime& machineRuntime,
                    bool processIsReal);

  Observation observeScreenParameters(Task handler) override;
  Observation observeDidWake(Task handler) override;
  Observation observeScreensDidWake(Task handler) override;
  Observation observeTermination(Task handler) override;

  /// Asks the program to end, like a signal.
  void askToEnd();

  /// Stops all announcements; signals that were observed are ignored.
  void end();

 private:
  struct Topics {
    Topic screenParameters;
    Topic didWake;
    Topic screensDidWake;
    Topic termination;
    /// The announcements whose observation was made to fail.
    std::set<std::string_view> unheard;
  };

  using Signals = std::unique_ptr<TerminationSignals>;

  bool isRefused(std::string_view call, std::string_view name);
  void followOtherProcesses();
  std::shared_ptr<Signals> waitForSignals();
  void announceSoon(Topic Topics::*topic, std::string_view name);
  void announceNotice(HardwareNotice notice);

  DeskHardware& hardware;
  Faults& faults;
  Runtime& runtime;
  const bool isReal;
  const std::shared_ptr<Topics> topics = std::make_shared<Topics>();
  /// Shared by all observers of the termination; empty after `end()`.
  std::weak_ptr<Signals> signals;
  Observation hardwareNotices;
  std::unique_ptr<FolderWatch> otherProcesses;
};

}  // namespace brivane
