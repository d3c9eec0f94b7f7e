#pragma once

#include "BrivaneApp/MenuRefreshing.h"
#include "BrivaneApp/Stoppable.h"
#include "BrivaneCore/Input/AccessibilityPermission.h"
#include "BrivaneCore/Input/HotkeyManager.h"
#include "BrivaneCore/Seams/ResidentMachine.h"

namespace brivane {

/// Starts the event tap once the user has given the Accessibility grant. The system doesn't
/// announce it, so it is checked every two seconds. Main thread.
class AccessibilityRetryController : public Stoppable {
 public:
  AccessibilityRetryController(ResidentMachine& machine, HotkeyManager& hotkeyManager,
                               MenuRefreshing& statusItemMenu);
  ~AccessibilityRetryController() override;
  AccessibilityRetryController(const AccessibilityRetryController&) = delete;
  AccessibilityRetryController& operator=(const AccessibilityRetryController&) = delete;

  void start();
  void stop() override;

 private:
  void retry();

  HotkeyManager& hotkeys;
  MenuRefreshing& statusItem;
  TimerID tapRetryTimer = 0;

  Runtime& runtime;
  SystemLog& log;
  AccessibilityPermission permission;
};

}  // namespace brivane
