#pragma once

#include "BrivaneApp/MenuRefreshing.h"
#include "BrivaneApp/Stoppable.h"
#include "BrivaneCore/Input/AccessibilityPermission.h"
#include "BrivaneCore/Input/HotkeyManager.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// Starts the event tap once the user has given the Accessibility grant, and stops it when the
/// grant has been withdrawn: all input may stall behind an active tap without its grant. The system
/// announces neither, so the grant is checked every two seconds while it is missing, and by
/// `check`. Main thread.
class AccessibilityRetryController : public Stoppable {
 public:
  AccessibilityRetryController(ResidentMachine& machine, HotkeyManager& hotkeyManager,
                               MenuRefreshing& statusItemMenu);
  ~AccessibilityRetryController() override;
  AccessibilityRetryController(const AccessibilityRetryController&) = delete;
  AccessibilityRetryController& operator=(const AccessibilityRetryController&) = delete;

  void start();
  void stop() override;

  /// Stops a tap without its grant, and starts again.
  void check();
  /// The same, by a later task of the main queue.
  void checkLater();

 private:
  void retry();

  HotkeyManager& hotkeys;
  MenuRefreshing& statusItem;
  TimerID tapRetryTimer = 0;

  Runtime& runtime;
  SystemLog& log;
  AccessibilityPermission permission;
  LivenessAnchor anchor;
};

}  // namespace brivane
