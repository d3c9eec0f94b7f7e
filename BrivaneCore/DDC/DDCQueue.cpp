// A read takes 40 ms when the monitor answers, 180 ms when it doesn't and a walk of the registry
// when it has no channel: too long for the main thread.

#include "BrivaneCore/DDC/DDCQueue.h"

#include <utility>

namespace brivane {
namespace {

/// Monitors take a moment to report a level that was written.
constexpr double quietPeriodSeconds = 3.0;
/// A monitor that failed this often in a row is left to the back-off.
constexpr std::int64_t tooManyFailures = 3;

std::optional<VCPReading> readLuminance(DDCTransport& handle) {
  const auto luminance = handle.getVCP(luminanceCode);
  return luminance && luminance->max > 0 ? luminance : std::nullopt;
}

MonitorReading readMonitor(DisplayRegistry& registry, DisplayID display) {
  auto handle = registry.handle(display);
  const auto luminance = handle ? readLuminance(*handle) : std::nullopt;
  return {display, std::move(handle), luminance};
}

std::vector<MonitorReading> readMonitors(DisplayRegistry& registry,
                                         const AppleDisplayBackend& appleDisplays) {
  std::vector<MonitorReading> readings;
  for (const DisplayID display : registry.onlineExternalDisplayIDs()) {
    if (appleDisplays.canControl(display)) continue;
    auto reading = readMonitor(registry, display);
    if (reading.handle) readings.push_back(std::move(reading));
  }
  return readings;
}

std::map<DisplayID, Percent> rereadMonitors(const std::vector<RereadCandidate>& candidates,
                                            const Runtime& runtime) {
  std::map<DisplayID, Percent> percents;
  for (const RereadCandidate& candidate : candidates) {
    if (candidate.readFailures >= tooManyFailures) continue;
    if (DDCQueue::isFreshlyWritten(candidate.lastWrite, runtime.now())) continue;
    if (const auto luminance = readLuminance(*candidate.handle)) {
      percents[candidate.display] =
          BrightnessScaling::percentFromRaw(luminance->current, luminance->max);
    }
  }
  return percents;
}

}  // namespace

DDCQueue::DDCQueue(Runtime& machineRuntime, std::shared_ptr<DisplayRegistry> displayRegistry,
                   std::shared_ptr<const AppleDisplayBackend> appleDisplayBackend)
    : runtime(machineRuntime),
      queue(runtime.makeSerialQueue("com.quorrel.brivane.ddc", QueueQuality::userInitiated)),
      registry(std::move(displayRegistry)),
      appleDisplays(std::move(appleDisplayBackend)) {}

MonitorReading DDCQueue::readNow(DisplayID display) {
  MonitorReading reading;
  queue->sync([&] { reading = readMonitor(*registry, display); });
  return reading;
}

std::optional<VCPReading> DDCQueue::probe(DisplayID display) {
  std::optional<VCPReading> reading;
  queue->sync([&] {
    if (const auto handle = registry->handle(display)) reading = handle->getVCP(luminanceCode);
  });
  return reading;
}

void DDCQueue::read(DisplayID display, std::function<void(const MonitorReading&)> take) {
  inBackground([display, searched = registry] { return readMonitor(*searched, display); },
               std::move(take));
}

void DDCQueue::readAll(std::function<void(const std::vector<MonitorReading>&)> take) {
  queue->async([take = std::move(take), watch = anchor.watch(), searched = registry,
                apple = appleDisplays, &mainQueue = runtime]() mutable {
    auto readings =
        watch.isAlive() ? readMonitors(*searched, *apple) : std::vector<MonitorReading>{};
    mainQueue.async([take = std::move(take), readings = std::move(readings)] { take(readings); });
  });
}

void DDCQueue::reread(std::vector<RereadCandidate> candidates,
                      std::function<void(const std::map<DisplayID, Percent>&)> take) {
  inBackground([candidates = std::move(candidates),
                &clock = runtime] { return rereadMonitors(candidates, clock); },
               std::move(take));
}

void DDCQueue::rescan() {
  queue->async([watch = anchor.watch(), scanned = registry] {
    if (watch.isAlive()) scanned->rescanIfNeeded(true);
  });
}

bool DDCQueue::isFreshlyWritten(std::optional<Instant> lastWrite, Instant now) {
  return lastWrite && secondsBetween(*lastWrite, now) < quietPeriodSeconds;
}

template <typename Work, typename Take>
void DDCQueue::inBackground(Work work, Take take) {
  queue->async([work = std::move(work), take = std::move(take), watch = anchor.watch(),
                &mainQueue = runtime]() mutable {
    if (!watch.isAlive()) return;
    mainQueue.async([take = std::move(take), watch, result = work()] {
      if (watch.isAlive()) take(result);
    });
  });
}

}  // namespace brivane
