// The order in which the program starts. Gamma tables that a killed predecessor left in force come
// first: everything that follows takes what it finds for the display's own. The relay is decided
// only after the hotkeys are up, and the user is asked for the grant only after what works without
// it is working.
#include "BrivaneApp/AppDelegate.h"

#include <vector>

#include "BrivaneApp/LegacyDefaultsMigration.h"
#include "BrivaneCore/Input/AccessibilityPermission.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"

namespace brivane {
namespace {

constexpr auto legacyDomain = "com.quorrel.tallowin";

}  // namespace

AppDelegate::AppDelegate(ResidentMachine& residentMachine, Frame& programFrame)
    : machine(residentMachine), frame(programFrame) {}

void AppDelegate::applicationDidFinishLaunching() {
  BrightnessController::restoreExtendedRangeLeftByAPreviousRun(machine.gammaTables());
  carrySettingsOver();
  root = std::make_shared<CompositionRoot>(machine, frame);
  makeTermination();
  startInput();
  startDisplays();
}

void AppDelegate::applicationWasOpenedAgain() {
  if (root) root->statusItem->openMenu();
}

void AppDelegate::applicationWillTerminate() {
  if (termination) termination->performTerminationCleanup();
}

void AppDelegate::carrySettingsOver() {
  const auto legacy = machine.openDefaultsSuite(legacyDomain);
  const auto carried = LegacyDefaultsMigration::run(machine.defaults(), legacy.get(), legacyDomain);
  if (carried.empty()) return;
  machine.log().write("Brivane: carried " + std::to_string(carried.size()) +
                      " settings over from Tallowin");
}

void AppDelegate::makeTermination() {
  const std::vector<Stoppable*> stoppables = {
      root->accessibilityRetry.get(), root->cacheResync.get(), root->displayReconciler.get(),
      root->keyPress.get(), root->systemBrightnessKeys.get()};
  termination = std::make_unique<TerminationCoordinator>(*root->controller, *root->keyMapping,
                                                         *root->hotkeys, stoppables);
  termination->installSigtermHandler(machine.notifications(), frame.application());
}

void AppDelegate::startInput() {
  root->hotkeys->start();
  const RelaySettings relaySettings(machine.defaults());
  root->systemBrightnessKeys->setEnabled(relaySettings.systemBrightnessKeysEnabled());
  AccessibilityPermission permission(machine);
  if (permission.isGranted()) return;
  permission.requestOncePerBuild();
  root->accessibilityRetry->start();
}

void AppDelegate::startDisplays() {
  root->controller->restoreSavedBrightness([weakRoot = std::weak_ptr(root)] {
    if (const auto live = weakRoot.lock()) live->statusItem->refresh();
  });
  root->displayReconciler->observeDisplayChanges();
  root->displayReconciler->observeWake();
  root->cacheResync->start();
  root->statusItem->refresh();
}

}  // namespace brivane
