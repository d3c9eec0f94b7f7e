// The controller joins parts that don't know each other: a hardware level that the user chose ends
// every software effect on that display, and baselines survive a change of displays only where an
// effect is in force, since a new capture there would take the effect's own ramp for the display's.

#include "BrivaneCore/Policy/BrightnessController.h"

#include <algorithm>
#include <utility>

#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"
#include "BrivaneCore/Gamma/ExtendedGammaBrightener.h"
#include "BrivaneCore/Gamma/GammaBrightener.h"
#include "BrivaneCore/Gamma/GammaDimmer.h"
#include "BrivaneCore/Support/Lookup.h"
#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

HeadroomMeasure potentialHeadroomOn(DisplaySystem& displays) {
  return [&displays](DisplayID display) {
    return BrightnessController::potentialHeadroom(displays, display);
  };
}

BrightnessEffects completed(BrightnessEffects effects,
                            const std::shared_ptr<GammaBaselineStore>& baselines,
                            DisplaySystem& displays) {
  const auto& io = baselines->io;
  if (!effects.dimmer) effects.dimmer = std::make_shared<GammaDimmer>(baselines, io);
  if (!effects.gammaBrightener) {
    effects.gammaBrightener = std::make_shared<GammaBrightener>(baselines, io);
  }
  if (!effects.extendedBrightener) {
    effects.extendedBrightener = std::make_shared<ExtendedGammaBrightener>(
        baselines, io, potentialHeadroomOn(displays), ExtendedGammaSettings{});
  }
  if (!effects.brighteningFactory) {
    effects.brighteningFactory = std::make_shared<DisplayBrighteningFactory>(
        effects.extendedBrightener, effects.gammaBrightener, potentialHeadroomOn(displays));
  }
  return effects;
}

}  // namespace

BrightnessController::BrightnessController(Machine& machine,
                                           std::shared_ptr<AppleDisplayBackend> appleDisplayBackend,
                                           std::shared_ptr<DisplayRegistry> registry,
                                           BrightnessStore& store,
                                           std::shared_ptr<GammaBaselineStore> gammaBaselines,
                                           BrightnessEffects givenEffects)
    : coordinator(machine, appleDisplayBackend, std::move(registry), store,
                  [this](DisplayID display) { restoreEffects(display); }),
      baselines(std::move(gammaBaselines)),
      effects(completed(std::move(givenEffects), baselines, machine.displays())),
      adjuster(machine, appleDisplayBackend, coordinator, effects.dimmer,
               effects.brighteningFactory),
      levelSetter{coordinator, effects.dimmer, effects.brighteningFactory,
                  BrightnessSettings(machine.defaults())},
      displays(machine.displays()),
      appleDisplays(std::move(appleDisplayBackend)) {}

void BrightnessController::restoreExtendedRangeLeftByAPreviousRun(GammaTables& tables) {
  const auto io = std::make_shared<CoreGraphicsGammaTableIO>(tables);
  const auto baselines = std::make_shared<GammaBaselineStore>(io);
  GammaDimmer(baselines, io).restoreAll();
  GammaBrightener(baselines, io).restoreAll();
}

std::optional<double> BrightnessController::potentialHeadroom(DisplaySystem& displays,
                                                              DisplayID display) {
  const auto screens = displays.screens();
  const auto match = std::ranges::find_if(
      screens, [display](const Screen& screen) { return screen.number.value_or(0) == display; });
  if (match == screens.end()) return std::nullopt;
  return match->potentialHeadroom;
}

AdjustOutcome BrightnessController::adjustDisplayUnderCursor(Percent delta, bool snapToStep) {
  return adjuster.adjust(delta, snapToStep, drivesBuiltInPanel);
}

bool BrightnessController::setLevel(Percent level, DisplayID display) {
  return levelSetter.setLevel(level, display);
}

std::optional<Percent> BrightnessController::level(DisplayID display) const {
  const auto depth = effects.dimmer->amount(display);
  if (depth >= 1) return -depth;
  const auto boost = std::max(effects.gammaBrightener->amount(display),
                              effects.extendedBrightener->amount(display));
  if (boost >= 1) return checkedSum(100, boost);
  return lookUp(coordinator.levelCache.percents, display);
}

std::optional<Percent> BrightnessController::brightness(DisplayID display) {
  return coordinator.brightness(display);
}

bool BrightnessController::setBrightness(Percent percent, DisplayID display) {
  return coordinator.write(percent, display, true);
}

BrightnessBackendKind BrightnessController::backend(DisplayID display) {
  return coordinator.backend(display);
}

std::optional<VCPReading> BrightnessController::probe(DisplayID display) {
  return coordinator.probe(display);
}

std::vector<DisplayTarget> BrightnessController::refreshTargets() {
  return coordinator.refreshTargets();
}

void BrightnessController::resyncCache() {
  coordinator.resyncCache();
}

void BrightnessController::retryNow() {
  coordinator.retryNow();
}

bool BrightnessController::isOnline(DisplayID display) const {
  return coordinator.registry->isOnline(display);
}

RetryStatus BrightnessController::retryStatus(DisplayID display) const {
  const bool answers = displays.isBuiltIn(display) ||
                       coordinator.levelCache.nativeMaxes.contains(display) ||
                       appleDisplays->canControl(display);
  return answers ? RetryStatus{} : coordinator.tracker.status(display);
}

void BrightnessController::restoreAllExtendedRange() {
  effects.dimmer->restoreAll();
  effects.gammaBrightener->restoreAll();
  effects.extendedBrightener->restoreAll();
}

void BrightnessController::invalidate() {
  coordinator.invalidate();
  baselines->invalidateUnless([this](DisplayID display) { return hasEffect(display); });
  effects.brighteningFactory->invalidateAll();
}

void BrightnessController::retryPendingNow() {
  coordinator.retryPendingNow();
}

void BrightnessController::restoreLateMonitors() {
  coordinator.restoreLateMonitors();
}

bool BrightnessController::hasUnresolvedDisplays() const {
  return coordinator.hasUnresolvedDisplays();
}

bool BrightnessController::reapplyGammaRamps() {
  const bool dimmed = effects.dimmer->reapply();
  const bool brightened = effects.gammaBrightener->reapply();
  const bool extended = effects.extendedBrightener->reapply();
  return dimmed && brightened && extended;
}

void BrightnessController::restoreSavedBrightness(std::function<void()> completion) {
  coordinator.restoreSavedBrightness(std::move(completion));
}

void BrightnessController::setDrivesBuiltInPanel(bool drives) {
  drivesBuiltInPanel = drives;
}

void BrightnessController::restoreEffects(DisplayID display) {
  effects.dimmer->restore(display);
  effects.gammaBrightener->restore(display);
  effects.extendedBrightener->restore(display);
}

bool BrightnessController::hasEffect(DisplayID display) const {
  return effects.dimmer->amount(display) > 0 || effects.gammaBrightener->amount(display) > 0 ||
         effects.extendedBrightener->amount(display) > 0;
}

}  // namespace brivane
