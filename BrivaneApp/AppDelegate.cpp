// The order of the start. Gamma tables that a killed instance left in force are restored first, as
// later steps take the tables in force for the displays' own. The relay is switched after hotkeys
// are registered, and the grant is asked for after everything that works without it.
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
  migrateSettings();
  root = std::make_shared<CompositionRoot>(machine, frame);
  makeTermination();
  startInput();
  startDisplays();
  requests = machine.answerRequests(*root->remoteController);
}

void AppDelegate::applicationWasOpenedAgain() {
  if (root) root->statusItem->openMenu();
}

void AppDelegate::applicationWillTerminate() {
  requests.reset();
  if (termination) termination->performTerminationCleanup();
}

void AppDelegate::migrateSettings() {
  const auto legacy = machine.openDefaultsSuite(legacyDomain);
  const auto copied = LegacyDefaultsMigration::run(machine.defaults(), legacy.get(), legacyDomain);
  if (copied.empty()) return;
  machine.log().write("Brivane: carried " + std::to_string(copied.size()) +
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
  root->keylessDesktopNotice->start();
}

}  // namespace brivane
