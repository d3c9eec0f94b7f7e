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

/// Has everything that was learnt about the displays learnt anew when they change and when the
/// machine or its screens wake, and then follows for three minutes the monitors that come up late.
/// Main thread.
class DisplayReconciler : public Stoppable {
 public:
  DisplayReconciler(ResidentMachine& machine, DisplayInvalidating& brightnessController,
                    MenuRefreshing& statusItemMenu,
                    SystemBrightnessKeyController& systemBrightnessKeyController,
                    DisplayArrangement currentArrangement);
  ~DisplayReconciler() override;
  DisplayReconciler(const DisplayReconciler&) = delete;
  DisplayReconciler& operator=(const DisplayReconciler&) = delete;

  /// Subscriptions for the life of this object.
  void observeDisplayChanges();
  void observeWake();

  /// What a wake calls for: everything at once, whether or not anything changed.
  void reprobeAfterWake();

  /// Polls from now on, for three minutes at most, until every display is resolved.
  void startRecoveryPolling();

  /// Ends the polling; the subscriptions stay.
  void stop() override;

 private:
  void screenParametersChanged();
  void restoreDisplays();
  void poll(Instant deadline);

  DisplayInvalidating& controller;
  MenuRefreshing& statusItem;
  SystemBrightnessKeyController& systemBrightnessKeys;
  DisplayArrangement arrangement;
  /// Software effects could not be written again and must be retried.
  bool extendedRangePending = false;
  TimerID recoveryTimer = 0;

  Runtime& runtime;
  DisplaySystem& displays;
  SystemNotifications& notifications;
  SystemLog& log;
  const InputDiagnosticsSettings diagnostics;
  const RelaySettings relaySettings;
  Observation screenParameters;
  Observation didWake;
  Observation screensDidWake;
  DelayedTasks restores;
  LivenessAnchor anchor;
};

}  // namespace brivane
