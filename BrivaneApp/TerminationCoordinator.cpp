#include "BrivaneApp/TerminationCoordinator.h"

#include <utility>

namespace brivane {

TerminationCoordinator::TerminationCoordinator(BrightnessController& brightnessController,
                                               KeyMappingStore& keyMappingStore,
                                               HotkeyManager& hotkeyManager,
                                               std::vector<Stoppable*> stoppablesInOrder)
    : controller(brightnessController),
      keyMapping(keyMappingStore),
      hotkeys(hotkeyManager),
      stoppables(std::move(stoppablesInOrder)) {}

void TerminationCoordinator::installSigtermHandler(SystemNotifications& notifications,
                                                   Application& application) {
  sigtermSource = notifications.observeTermination([this, &application] {
    performTerminationCleanup();
    application.exit(0);
  });
}

void TerminationCoordinator::performTerminationCleanup() {
  controller.restoreAllExtendedRange();
  for (Stoppable* stoppable : stoppables) stoppable->stop();
  keyMapping.revert();
  hotkeys.stop();
}

}  // namespace brivane
