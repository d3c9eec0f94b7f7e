#pragma once

#include "BrivaneApp/MenuRefreshing.h"
#include "BrivaneApp/Stoppable.h"
#include "BrivaneApp/SystemBrightnessKeyController.h"
#include "BrivaneCore/DDC/DisplayArrangement.h"
#include "BrivaneCore/Input/InputDiagnosticsSettings.h"
#include "BrivaneCore/Policy/DisplayInvalidating.h"
#include "BrivaneCore/Seams/DelayedTasks.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// Rebuilds what is known about the displays after a change or wake, and then polls for three
/// minutes for monitors that come up late. Main thread.
class DisplayReconciler : public Stoppable {
 public:
  DisplayReconciler(ResidentMachine& machine, DisplayInvalidating& brightnessController,
                    MenuRefreshing& statusItemMenu,
                    SystemBrightnessKeyController& systemBrightnessKeyController,
                    DisplayArrangement currentArrangement);
  ~DisplayReconciler() override;
  DisplayReconciler(const DisplayReconciler&) = delete;
  DisplayReconciler& operator=(const DisplayReconciler&) = delete;

  /// Subscriptions for the life of this object. Display changes include buses that appear.
  void observeDisplayChanges();
  void observeWake();

  /// Handles a wake: at once, whether or not the arrangement changed.
  void reprobeAfterWake();

  /// Starts polling, for three minutes at most, until every display is resolved.
  void startRecoveryPolling();

  /// Ends the polling; the subscriptions stay.
  void stop() override;

 private:
  void screenParametersChanged();
  void monitorBusAppeared();
  void restoreDisplays();
  void poll(Instant deadline);

  DisplayInvalidating& controller;
  MenuRefreshing& statusItem;
  SystemBrightnessKeyController& systemBrightnessKeys;
  DisplayArrangement arrangement;
  /// Software effects could not be reapplied and must be retried.
  bool extendedRangePending = false;
  TimerID recoveryTimer = 0;
  /// Monitors that don't answer are about to be retried over buses that have appeared.
  bool isRetryDue = false;

  Runtime& runtime;
  DisplaySystem& displays;
  SystemNotifications& notifications;
  SystemLog& log;
  const InputDiagnosticsSettings diagnostics;
  const RelaySettings relaySettings;
  Observation screenParameters;
  Observation monitorBuses;
  Observation didWake;
  Observation screensDidWake;
  DelayedTasks laterTasks;
  LivenessAnchor anchor;
};

}  // namespace brivane
