// A display's level: its backend, the caches, reads and writes that the caller waits for.
// Background reads are in DDCDisplayCoordinatorBackground.cpp.

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"

#include <limits>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"
#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

std::uint16_t rawLuminance(Percent percent, std::int64_t nativeMax) {
  const std::int64_t raw = BrightnessScaling::rawFromPercent(percent, nativeMax);
  if (raw < 0 || raw > std::numeric_limits<std::uint16_t>::max()) {
    fatal("a luminance does not fit the 16 bits of a DDC/CI value");
  }
  return static_cast<std::uint16_t>(raw);
}

}  // namespace

DDCDisplayCoordinator::DDCDisplayCoordinator(
    Machine& machine, std::shared_ptr<AppleDisplayBackend> appleDisplayBackend,
    std::shared_ptr<DisplayRegistry> displayRegistry, BrightnessStore& brightnessStore,
    ExplicitWriteCallback explicitWriteCallback)
    : registry(std::move(displayRegistry)),
      store(brightnessStore),
      onExplicitDDCWrite(std::move(explicitWriteCallback)),
      tracker([&clock = machine.runtime()] { return clock.now(); }),
      ddcQueue(machine.runtime(), registry, appleDisplayBackend),
      runtime(machine.runtime()),
      displays(machine.displays()),
      log(machine.log()),
      appleDisplays(std::move(appleDisplayBackend)),
      retries(machine.runtime()) {}

BrightnessBackendKind DDCDisplayCoordinator::backend(DisplayID display) {
  if (const auto decided = lookUp(backends, display)) return *decided;
  auto kind = BrightnessBackendKind::none;
  if (appleDisplays->canControl(display)) {
    kind = BrightnessBackendKind::appleDisplay;
  } else if (hasAnswered(display)) {
    kind = BrightnessBackendKind::ddc;
  }
  if (kind != BrightnessBackendKind::none) backends[display] = kind;
  return kind;
}

std::optional<Percent> DDCDisplayCoordinator::brightness(DisplayID display) {
  if (backend(display) == BrightnessBackendKind::appleDisplay) return readAppleDisplay(display);
  if (const auto cached = lookUp(levelCache.percents, display)) return cached;
  const MonitorReading reading = ddcQueue.readNow(display);
  if (!reading.luminance) return std::nullopt;
  resolvedHandles[display] = reading.handle;
  keepLevel(display, *reading.luminance);
  keepCapability(display, *reading.luminance);
  return lookUp(levelCache.percents, display);
}

bool DDCDisplayCoordinator::write(Percent percent, DisplayID display, bool isExplicitUserWrite) {
  const Percent level = BrightnessScaling::clamp(percent);
  const bool isAppleDisplay = backend(display) == BrightnessBackendKind::appleDisplay;
  const bool isTaken = isAppleDisplay ? writeToAppleDisplay(level, display, isExplicitUserWrite)
                                      : writeToMonitor(level, display, isExplicitUserWrite);
  if (!isTaken) return false;
  levelCache.percents[display] = level;
  lastWrite[display] = runtime.now();
  store.save(level, display);
  return true;
}

std::optional<Percent> DDCDisplayCoordinator::lastKnownPercent(DisplayID display) {
  if (const auto cached = lookUp(levelCache.percents, display)) return cached;
  if (!isKnownDDC(display) || !store.nativeMax(display)) return std::nullopt;
  return store.load(display);
}

bool DDCDisplayCoordinator::isKnownDDC(DisplayID display) {
  return tracker.isKnownDDC(display, hasAnswered(display), store.supportsDDC(display));
}

std::vector<DisplayTarget> DDCDisplayCoordinator::refreshTargets() {
  const auto online = registry->onlineDisplayIDs();
  const auto names = registry->localizedNames(online);
  std::vector<DisplayTarget> targets;
  for (std::size_t i = 0; i < online.size(); ++i) {
    const DisplayID display = online[i];
    targets.push_back({display, names[i], displays.isBuiltIn(display), settableRange(display)});
  }
  return targets;
}

std::optional<VCPReading> DDCDisplayCoordinator::probe(DisplayID display) {
  return ddcQueue.probe(display);
}

bool DDCDisplayCoordinator::writeToAppleDisplay(Percent percent, DisplayID display,
                                                bool isExplicitUserWrite) {
  if (isExplicitUserWrite) onExplicitDDCWrite(display);
  return appleDisplays->write(percent, display);
}

bool DDCDisplayCoordinator::writeToMonitor(Percent percent, DisplayID display,
                                           bool isExplicitUserWrite) {
  const auto handle = lookUp(resolvedHandles, display);
  auto nativeMax = lookUp(levelCache.nativeMaxes, display);
  if (handle && !nativeMax) nativeMax = store.nativeMax(display);
  if (!handle || !nativeMax) {
    warmCache(display);
    return false;
  }
  if (isExplicitUserWrite) onExplicitDDCWrite(display);
  return (*handle)->setVCP(luminanceCode, rawLuminance(percent, *nativeMax));
}

std::optional<Percent> DDCDisplayCoordinator::readAppleDisplay(DisplayID display) {
  const auto percent = appleDisplays->read(display);
  if (percent) levelCache.percents[display] = *percent;
  return percent;
}

std::optional<PercentRange> DDCDisplayCoordinator::settableRange(DisplayID display) {
  bool isSettable = false;
  if (backend(display) == BrightnessBackendKind::appleDisplay) {
    isSettable = readAppleDisplay(display).has_value();
  } else if (!displays.isBuiltIn(display)) {
    if (!levelCache.percents.contains(display)) warmCache(display);
    isSettable = levelCache.percents.contains(display);
  }
  return isSettable ? std::optional(PercentRange{0, 100}) : std::nullopt;
}

void DDCDisplayCoordinator::keepLevel(DisplayID display, const VCPReading& luminance) {
  levelCache.store(BrightnessScaling::percentFromRaw(luminance.current, luminance.max),
                   luminance.max, display);
}

void DDCDisplayCoordinator::keepCapability(DisplayID display, const VCPReading& luminance) {
  store.saveSupportsDDC(true, display);
  store.saveNativeMax(luminance.max, display);
}

bool DDCDisplayCoordinator::hasAnswered(DisplayID display) const {
  return resolvedHandles.contains(display) && levelCache.nativeMaxes.contains(display);
}

}  // namespace brivane
