#pragma once

#include <memory>
#include <utility>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"

namespace brivane {

/// The system's announcements. Main thread; handlers run as main-queue tasks.
class SystemNotifications {
 public:
  virtual ~SystemNotifications() = default;

  /// Screens were added, removed, moved or resized, or something else about them changed; often
  /// announced although nothing did.
  virtual Observation observeScreenParameters(Task handler) = 0;

  /// The machine woke from sleep.
  virtual Observation observeDidWake(Task handler) = 0;

  /// The screens woke from their own sleep; after the machine's sleep both come.
  virtual Observation observeScreensDidWake(Task handler) = 0;

  /// A bus that may lead to a monitor appeared, or this user may use it now. A driver that is
  /// loaded announces each of its buses. Machines whose buses are always there announce none.
  virtual Observation observeMonitorBuses(Task handler) {
    return std::make_shared<Task>(std::move(handler));
  }

  /// A keyboard, or another device with keys, was attached and may lack the key mapping; one
  /// keyboard is often several devices. Machines whose key mapping covers later keyboards announce
  /// none.
  virtual Observation observeKeyboards(Task handler) {
    return std::make_shared<Task>(std::move(handler));
  }

  /// The process was asked to end by a signal: SIGTERM, and SIGINT and SIGHUP unless they were
  /// ignored when the program started (nohup); then they stay ignored. While the observation is
  /// kept, these signals do nothing else; afterwards they are ignored, so that a second signal
  /// can't interrupt what the first one began.
  virtual Observation observeTermination(Task handler) = 0;
};

}  // namespace brivane
