// Three ranges make one continuous travel. The software ends claim a press before the hardware
// does, and dimming before brightening, so the way back from either end retraces the way there. In
// the software ranges a stepped press moves by a fixed step; only the hardware snaps to the grid.

#include "BrivaneCore/Policy/BrightnessKeyAdjuster.h"

#include <utility>

#include "BrivaneCore/Input/InputDiagnosticsSettings.h"
#include "BrivaneCore/Levels/BrightnessSettings.h"
#include "BrivaneCore/Policy/CursorRouter.h"
#include "BrivaneCore/Support/Lookup.h"
#include "BrivaneCore/Support/Numbers.h"

namespace brivane {

BrightnessKeyAdjuster::BrightnessKeyAdjuster(
    Machine& machine, std::shared_ptr<AppleDisplayBackend> appleDisplayBackend,
    DDCDisplayCoordinator& displayCoordinator, std::shared_ptr<DisplayDimming> displayDimming,
    std::shared_ptr<DisplayBrighteningFactory> factory)
    : coordinator(displayCoordinator),
      dimmer(std::move(displayDimming)),
      brighteningFactory(std::move(factory)),
      displays(machine.displays()),
      defaults(machine.defaults()),
      log(machine.log()),
      appleDisplays(std::move(appleDisplayBackend)) {}

AdjustOutcome BrightnessKeyAdjuster::adjust(Percent delta, bool snapToStep,
                                            bool drivesBuiltInPanel) {
  const auto display = CursorRouter(displays).displayUnderCursor();
  const bool isVerbose = InputDiagnosticsSettings(defaults).verboseKeyLog();
  if (!display) {
    if (isVerbose) {
      log.write("Brivane: no display under cursor at " + describe(displays.pointerPosition()));
    }
    return AdjustOutcome::passThrough();
  }
  if (isVerbose) logCursorDisplay(*display);
  if (displays.isBuiltIn(*display) && !drivesBuiltInPanel) return AdjustOutcome::passThrough();
  const Press press{*display, coordinator.registry->localizedName(*display), delta, snapToStep};
  return coordinator.backend(*display) == BrightnessBackendKind::appleDisplay
             ? adjustAppleDisplay(press)
             : adjustOtherDisplay(press);
}

void BrightnessKeyAdjuster::logCursorDisplay(DisplayID display) {
  const auto cached = lookUp(coordinator.levelCache.percents, display);
  log.write("Brivane: cursor on [" + std::to_string(display) + "] " +
            coordinator.registry->localizedName(display) +
            " backend=" + std::string(describe(coordinator.backend(display))) +
            " cached=" + (cached ? std::to_string(*cached) : "none"));
}

AdjustOutcome BrightnessKeyAdjuster::adjustAppleDisplay(const Press& press) {
  auto percent = appleDisplays->read(press.display);
  if (!percent) percent = lookUp(coordinator.levelCache.percents, press.display);
  return percent ? adjustFrom(*percent, press) : AdjustOutcome::passThrough();
}

AdjustOutcome BrightnessKeyAdjuster::adjustOtherDisplay(const Press& press) {
  const auto percent = coordinator.lastKnownPercent(press.display);
  if (!percent) {
    coordinator.warmCache(press.display);
    return coordinator.isKnownDDC(press.display)
               ? AdjustOutcome::connecting(press.display, press.name)
               : AdjustOutcome::passThrough();
  }
  if (!coordinator.levelCache.nativeMaxes.contains(press.display)) {
    coordinator.warmCache(press.display);
  }
  return adjustFrom(*percent, press);
}

AdjustOutcome BrightnessKeyAdjuster::adjustFrom(Percent percent, const Press& press) {
  const auto range = softwareRange(press.display);
  if (range.dims && (range.depth > 0 || (percent == 0 && press.delta < 0))) {
    return dim(range, press);
  }
  if (range.brightens && (range.boost > 0 || (percent >= 100 && press.delta >= 1))) {
    if (const auto outcome = brighten(range, press)) return *outcome;
  }
  return stepHardware(percent, press);
}

BrightnessKeyAdjuster::SoftwareRange BrightnessKeyAdjuster::softwareRange(DisplayID display) {
  auto& brightening = brighteningFactory->brightening(display);
  const BrightnessSettings settings(defaults);
  const bool dims = settings.subZeroDimmingEnabled();
  const bool brightens = settings.softwareBrighteningEnabled();
  const bool canDim = dimmer->isSupported(display);
  const auto depth = dimmer->amount(display);
  const bool canBrighten = brightening.isSupported(display);
  return {brightening, dims && canDim, depth, brightens && canBrighten,
          brightening.amount(display)};
}

AdjustOutcome BrightnessKeyAdjuster::dim(const SoftwareRange& range, const Press& press) {
  const auto step = press.delta < 0 ? brightnessStep : -brightnessStep;
  const auto change = press.snapToStep ? step : checkedNegation(press.delta);
  const auto wanted = checkedSum(range.depth, change);
  const auto depth = BrightnessScaling::clamp(wanted);
  dimmer->apply(depth, press.display);
  if (range.depth == 0) coordinator.replaceAwaitedLevel(0, press.display);
  return AdjustOutcome::handled(press.display, press.name, wanted < 1 ? 0 : -depth);
}

std::optional<AdjustOutcome> BrightnessKeyAdjuster::brighten(const SoftwareRange& range,
                                                             const Press& press) {
  const auto step = press.delta > 0 ? brightnessStep : -brightnessStep;
  const auto change = press.snapToStep ? step : press.delta;
  const auto wanted = checkedSum(range.boost, change);
  const auto boost = BrightnessScaling::clamp(wanted);
  if (!range.brightening.apply(boost, press.display)) return std::nullopt;
  if (range.boost == 0) coordinator.replaceAwaitedLevel(100, press.display);
  return AdjustOutcome::handled(press.display, press.name, wanted < 1 ? 100 : boost + 100);
}

AdjustOutcome BrightnessKeyAdjuster::stepHardware(Percent percent, const Press& press) {
  const auto target = press.snapToStep
                          ? AdjustDecision::snapped(percent, press.delta, brightnessStep)
                          : BrightnessScaling::clamp(checkedSum(percent, press.delta));
  if (target == percent) return AdjustOutcome::handled(press.display, press.name, percent);
  if (!coordinator.write(target, press.display, true)) return AdjustOutcome::passThrough();
  return AdjustOutcome::handled(press.display, press.name, target);
}

}  // namespace brivane
