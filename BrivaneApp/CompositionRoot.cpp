#include "BrivaneApp/CompositionRoot.h"

#include "BrivaneApp/Strings.h"
#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "BrivaneUI/Strings.h"

namespace brivane {

CompositionRoot::CompositionRoot(ResidentMachine& machine, Frame& frame)
    : stack(machine),
      applicationTexts(machine.resources(), machine.log(), applicationBundle),
      userInterfaceTexts(machine.resources(), machine.log(), userInterfaceBundle),
      colors(machine.resources(), machine.log()),
      controller(stack.controller) {
  keyMapping = std::make_shared<HIDUtilKeyMapping>(
      HIDUtilKeyMapping::defaultRunner(machine.processes(), machine.log()));
  hud = std::make_shared<BrightnessHUD>(machine, frame, colors, userInterfaceTexts);
  statusItem =
      std::make_shared<StatusItemController>(machine, frame, applicationTexts, *controller);
  makeInput(machine, frame);
  makeFollowers(machine);
  connectMenu();
  connectGrantChecks();
  remoteController = std::make_shared<RemoteController>(machine, *controller, *keyPress,
                                                        *statusItem, *hotkeyEditor);
}

void CompositionRoot::makeInput(ResidentMachine& machine, Frame& frame) {
  keyPress =
      std::make_shared<KeyPressCoordinator>(machine.runtime(), *controller, *hud, *statusItem);
  hotkeys = std::make_shared<HotkeyManager>(
      machine, [weakKeyPress = std::weak_ptr(keyPress)](const Adjustment& adjustment,
                                                        HotkeySource /*source*/) {
        const auto live = weakKeyPress.lock();
        return live && live->handle(adjustment);
      });
  hotkeyEditor = std::make_shared<HotkeyEditor>(
      machine, frame, applicationTexts,
      [weakHotkeys = std::weak_ptr(hotkeys), weakItem = std::weak_ptr(statusItem)] {
        if (const auto live = weakHotkeys.lock()) live->reloadBindings();
        if (const auto live = weakItem.lock()) live->refresh();
      },
      [weakHotkeys = std::weak_ptr(hotkeys)](bool isCapturing) {
        if (const auto live = weakHotkeys.lock()) live->suspendUserBindings(isCapturing);
      });
}

void CompositionRoot::makeFollowers(ResidentMachine& machine) {
  systemBrightnessKeys =
      std::make_shared<SystemBrightnessKeyController>(machine, *controller, *keyMapping, *hotkeys);
  displayReconciler =
      std::make_shared<DisplayReconciler>(machine, *controller, *statusItem, *systemBrightnessKeys,
                                          DisplayArrangement::current(machine.displays()));
  accessibilityRetry =
      std::make_shared<AccessibilityRetryController>(machine, *hotkeys, *statusItem);
  cacheResync = std::make_shared<CacheResyncScheduler>(machine.runtime(), *controller);
  keylessDesktopNotice = std::make_shared<KeylessDesktopNotice>(
      machine, *hotkeys, *statusItem, applicationTexts, showHotkeyEditor());
}

void CompositionRoot::connectMenu() {
  statusItem->onEditHotkeys = showHotkeyEditor();
  statusItem->onToggleSystemBrightnessKeys =
      [weakKeys = std::weak_ptr(systemBrightnessKeys)](bool enabled) {
        if (const auto live = weakKeys.lock()) live->setEnabled(enabled);
      };
  statusItem->onMenuOpen = [weakHotkeys = std::weak_ptr(hotkeys)](bool isOpen) {
    if (const auto live = weakHotkeys.lock()) live->setMenuOpen(isOpen);
  };
}

void CompositionRoot::connectGrantChecks() {
  hotkeys->onTapDisabled = [weakRetry = std::weak_ptr(accessibilityRetry)] {
    if (const auto live = weakRetry.lock()) live->checkLater();
  };
  cacheResync->onResync = [weakRetry = std::weak_ptr(accessibilityRetry)] {
    if (const auto live = weakRetry.lock()) live->check();
  };
}

Task CompositionRoot::showHotkeyEditor() const {
  return [weakEditor = std::weak_ptr(hotkeyEditor)] {
    if (const auto live = weakEditor.lock()) live->show();
  };
}

}  // namespace brivane
