#pragma once

#include <vector>

#include "BrivaneApp/Stoppable.h"
#include "BrivaneCore/Input/HotkeyManager.h"
#include "BrivaneCore/KeyRelay/KeyMappingStore.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/SystemNotifications.h"
#include "BrivaneUI/Frame/Application.h"

namespace brivane {

/// Leaves displays and keyboard to the operating system as they were before, when the program ends
/// on its own or is asked to by a signal. Main thread.
class TerminationCoordinator {
 public:
  /// What it stops must outlive it.
  TerminationCoordinator(BrightnessController& brightnessController,
                         KeyMappingStore& keyMappingStore, HotkeyManager& hotkeyManager,
                         std::vector<Stoppable*> stoppablesInOrder);

  /// From now on the signal cleans up and ends the application with status 0.
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
