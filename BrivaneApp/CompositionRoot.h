#pragma once

#include <memory>

#include "BrivaneApp/AccessibilityRetryController.h"
#include "BrivaneApp/BrightnessHUD.h"
#include "BrivaneApp/BrightnessStack.h"
#include "BrivaneApp/CacheResyncScheduler.h"
#include "BrivaneApp/DisplayReconciler.h"
#include "BrivaneApp/HotkeyEditor.h"
#include "BrivaneApp/KeyPressCoordinator.h"
#include "BrivaneApp/KeylessDesktopNotice.h"
#include "BrivaneApp/RemoteController.h"
#include "BrivaneApp/StatusItemController.h"
#include "BrivaneApp/SystemBrightnessKeyController.h"
#include "BrivaneCore/Input/HotkeyManager.h"
#include "BrivaneCore/KeyRelay/KeyMappingStore.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/CatalogColor.h"
#include "BrivaneUI/Frame/Frame.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// Makes and connects the resident program's long-lived objects; the delegate starts them. An
/// object uses those above it directly; calls in the other direction go through weak references, so
/// that all objects end with the root. Main thread.
class CompositionRoot {
 private:
  BrightnessStack stack;
  const StringCatalogue applicationTexts;
  const StringCatalogue userInterfaceTexts;
  CatalogColor colors;

 public:
  /// Machine and frame must outlive it.
  CompositionRoot(ResidentMachine& machine, Frame& frame);
  CompositionRoot(const CompositionRoot&) = delete;
  CompositionRoot& operator=(const CompositionRoot&) = delete;

  const std::shared_ptr<BrightnessController> controller;
  std::shared_ptr<KeyMappingStore> keyMapping;
  std::shared_ptr<BrightnessHUD> hud;
  std::shared_ptr<StatusItemController> statusItem;
  std::shared_ptr<HotkeyEditor> hotkeyEditor;
  std::shared_ptr<HotkeyManager> hotkeys;
  std::shared_ptr<KeyPressCoordinator> keyPress;
  std::shared_ptr<SystemBrightnessKeyController> systemBrightnessKeys;
  std::shared_ptr<DisplayReconciler> displayReconciler;
  std::shared_ptr<AccessibilityRetryController> accessibilityRetry;
  std::shared_ptr<CacheResyncScheduler> cacheResync;
  std::shared_ptr<RemoteController> remoteController;
  std::shared_ptr<KeylessDesktopNotice> keylessDesktopNotice;

 private:
  void makeInput(ResidentMachine& machine, Frame& frame);
  void makeFollowers(ResidentMachine& machine);
  void connectMenu();
  Task showHotkeyEditor() const;
  void connectGrantChecks();
};

}  // namespace brivane
