#pragma once

#include <vector>

#include "BrivaneApp/Stoppable.h"
#include "BrivaneCore/Input/HotkeyManager.h"
#include "BrivaneCore/KeyRelay/KeyMappingStore.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/SystemNotifications.h"
#include "BrivaneUI/Frame/Application.h"

namespace brivane {

/// Restores displays and keyboard when the program ends, by itself or by a signal. Main thread.
class TerminationCoordinator {
 public:
  /// The stopped objects must outlive the coordinator.
  TerminationCoordinator(BrightnessController& brightnessController,
                         KeyMappingStore& keyMappingStore, HotkeyManager& hotkeyManager,
                         std::vector<Stoppable*> stoppablesInOrder);

  /// Has the signal clean up and end the application with status 0.
  void installSigtermHandler(SystemNotifications& notifications, Application& application);

  void performTerminationCleanup();

 private:
  BrightnessController& controller;
  KeyMappingStore& keyMapping;
  HotkeyManager& hotkeys;
  const std::vector<Stoppable*> stoppables;
  Observation sigtermSource;
};

}  // namespace brivane
