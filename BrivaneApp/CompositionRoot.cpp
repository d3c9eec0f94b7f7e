#include "BrivaneApp/CompositionRoot.h"

#include "BrivaneApp/Strings.h"
#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"
#include "BrivaneCore/Gamma/DisplayBrighteningFactory.h"
#include "BrivaneCore/Gamma/ExtendedGammaBrightener.h"
#include "BrivaneCore/Gamma/GammaBrightener.h"
#include "BrivaneCore/Gamma/GammaDimmer.h"
#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "BrivaneUI/Strings.h"

namespace brivane {
namespace {

constexpr ExtendedGammaSettings extendedGammaSettings = {.maximumGain = 4.0,
                                                         .preferredEntryCount = 256};

BrightnessEffects makeEffects(const std::shared_ptr<GammaBaselineStore>& baselines,
                              DisplaySystem& displays) {
  const auto& io = baselines->io;
  const HeadroomMeasure headroom = [&displays](DisplayID display) {
    return BrightnessController::potentialHeadroom(displays, display);
  };
  BrightnessEffects effects;
  effects.dimmer = std::make_shared<GammaDimmer>(baselines, io);
  effects.gammaBrightener = std::make_shared<GammaBrightener>(baselines, io);
  effects.extendedBrightener =
      std::make_shared<ExtendedGammaBrightener>(baselines, io, headroom, extendedGammaSettings);
  effects.brighteningFactory = std::make_shared<DisplayBrighteningFactory>(
      effects.extendedBrightener, effects.gammaBrightener, headroom);
  return effects;
}

}  // namespace

CompositionRoot::CompositionRoot(ResidentMachine& machine, Frame& frame)
    : appleDisplays(std::make_shared<AppleDisplayBackend>(machine.symbols(), machine.displays())),
      store(machine.defaults(), machine.displays()),
      applicationTexts(machine.resources(), machine.log(), applicationBundle),
      userInterfaceTexts(machine.resources(), machine.log(), userInterfaceBundle),
      colors(machine.resources(), machine.log()) {
  makeController(machine);
  keyMapping = std::make_shared<HIDUtilKeyMapping>(
      HIDUtilKeyMapping::defaultRunner(machine.processes(), machine.log()));
  hud = std::make_shared<BrightnessHUD>(machine, frame, colors, userInterfaceTexts);
  statusItem =
      std::make_shared<StatusItemController>(machine, frame, applicationTexts, *controller);
  makeInput(machine, frame);
  makeFollowers(machine);
  connectMenu();
}

void CompositionRoot::makeController(ResidentMachine& machine) {
  const auto baselines = std::make_shared<GammaBaselineStore>(
      std::make_shared<CoreGraphicsGammaTableIO>(machine.gammaTables()));
  auto effects = makeEffects(baselines, machine.displays());
  auto registry = std::make_shared<DisplayRegistry>(machine.displays(), machine.ioRegistry(),
                                                    machine.symbols(), machine.runtime());
  controller = std::make_shared<BrightnessController>(machine, appleDisplays, std::move(registry),
                                                      store, baselines, std::move(effects));
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
}

void CompositionRoot::connectMenu() {
  statusItem->onEditHotkeys = [weakEditor = std::weak_ptr(hotkeyEditor)] {
    if (const auto live = weakEditor.lock()) live->show();
  };
  statusItem->onToggleSystemBrightnessKeys =
      [weakKeys = std::weak_ptr(systemBrightnessKeys)](bool enabled) {
        if (const auto live = weakKeys.lock()) live->setEnabled(enabled);
      };
}

}  // namespace brivane
