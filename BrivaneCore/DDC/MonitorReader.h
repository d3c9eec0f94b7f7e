#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "BrivaneCore/DDC/DDCTransport.h"
#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// What one look at a monitor brought.
struct MonitorReading {
  DisplayID display = 0;
  /// Null when no channel to the monitor was found.
  std::shared_ptr<DDCTransport> handle;
  /// With a maximum of 1 or more; absent when the monitor did not answer.
  std::optional<VCPReading> luminance;
};

/// A monitor that has answered before, as the main thread knew it when a re-read was queued.
struct RereadCandidate {
  DisplayID display = 0;
  std::shared_ptr<DDCTransport> handle;
  /// Consecutive failed reads.
  std::int64_t readFailures = 0;
  /// The last successful write of this run.
  std::optional<Instant> lastWrite;
};

/// The work of the DDC queue. It is given everything that it touches, so that it never needs to
/// look at an object of the main thread. All of it blocks for the transport's waits.
struct MonitorReader {
  static MonitorReading read(DisplayRegistry& registry, DisplayID display);

  /// Reads every online external display that display services can't control; those without a
  /// channel are left out.
  static std::vector<MonitorReading> readAll(DisplayRegistry& registry,
                                             const AppleDisplayBackend& appleDisplays);

  /// The percents of the candidates that are worth asking and answered.
  static std::map<DisplayID, Percent> reread(const std::vector<RereadCandidate>& candidates,
                                             const Runtime& runtime);

  /// Whether a monitor was written to so shortly before `now` that what it reports may be older
  /// than what it was told.
  static bool isFreshlyWritten(std::optional<Instant> lastWrite, Instant now);
};

}  // namespace brivane
