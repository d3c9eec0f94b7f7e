#pragma once

#include <string>

#include "BrivaneApp/BrightnessHUD.h"
#include "BrivaneApp/MenuRefreshing.h"
#include "BrivaneApp/Stoppable.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// Turns a press of a brightness key into a change of brightness and shows the result. Main thread;
/// blocks for the hardware write.
class KeyPressCoordinator : public Stoppable {
 public:
  KeyPressCoordinator(Runtime& machineRuntime, BrightnessController& brightnessController,
                      BrightnessHUD& brightnessHUD, MenuRefreshing& statusItemMenu);
  ~KeyPressCoordinator() override;
  KeyPressCoordinator(const KeyPressCoordinator&) = delete;
  KeyPressCoordinator& operator=(const KeyPressCoordinator&) = delete;

  /// Whether the press was handled; if not, the operating system may have it.
  bool handle(const Adjustment& adjustment);

  /// The same, and all that came of it.
  AdjustOutcome press(const Adjustment& adjustment);

  /// Ends the updates of a connecting HUD, which then times out by itself.
  void stop() override;

 private:
  void showLevel(const AdjustOutcome& outcome);
  void showConnecting(DisplayID display, const std::string& name);
  void updateConnecting(DisplayID display, const std::string& name);
  void presentConnecting(DisplayID display, const std::string& name, const RetryStatus& status);

  BrightnessController& controller;
  BrightnessHUD& hud;
  MenuRefreshing& statusItem;
  TimerID connectingTicker = 0;

  Runtime& runtime;
  LivenessAnchor anchor;
};

}  // namespace brivane
