// One read of a monitor that answers takes 40 ms, of one that does not 180 ms and of one that is
// not there a walk of the registry: nothing the main thread should wait for.

#include "BrivaneCore/DDC/MonitorReader.h"

namespace brivane {
namespace {

/// Monitors take a moment to report what they were told.
constexpr double quietPeriodSeconds = 3.0;
/// A monitor that failed this often in a row is left to the back-off.
constexpr std::int64_t tooManyFailures = 3;

std::optional<VCPReading> readLuminance(DDCTransport& handle) {
  const auto luminance = handle.getVCP(luminanceCode);
  return luminance && luminance->max > 0 ? luminance : std::nullopt;
}

}  // namespace

MonitorReading MonitorReader::read(DisplayRegistry& registry, DisplayID display) {
  auto handle = registry.handle(display);
  const auto luminance = handle ? readLuminance(*handle) : std::nullopt;
  return {display, std::move(handle), luminance};
}

std::vector<MonitorReading> MonitorReader::readAll(DisplayRegistry& registry,
                                                   const AppleDisplayBackend& appleDisplays) {
  std::vector<MonitorReading> readings;
  for (const DisplayID display : registry.onlineExternalDisplayIDs()) {
    if (appleDisplays.canControl(display)) continue;
    auto reading = read(registry, display);
    if (reading.handle) readings.push_back(std::move(reading));
  }
  return readings;
}

std::map<DisplayID, Percent> MonitorReader::reread(const std::vector<RereadCandidate>& candidates,
                                                   const Runtime& runtime) {
  std::map<DisplayID, Percent> percents;
  for (const RereadCandidate& candidate : candidates) {
    if (candidate.readFailures >= tooManyFailures) continue;
    if (isFreshlyWritten(candidate.lastWrite, runtime.now())) continue;
    if (const auto luminance = readLuminance(*candidate.handle)) {
      percents[candidate.display] =
          BrightnessScaling::percentFromRaw(luminance->current, luminance->max);
    }
  }
  return percents;
}

bool MonitorReader::isFreshlyWritten(std::optional<Instant> lastWrite, Instant now) {
  return lastWrite && secondsBetween(*lastWrite, now) < quietPeriodSeconds;
}

}  // namespace brivane
