#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "BrivaneCore/DDC/DDCTransport.h"
#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"

namespace brivane {

/// The result of reading a monitor once.
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

/// The serial queue of all reads of monitors. Its tasks own what they touch and never use
/// an object of the main thread. Main thread; results of background reads come as later tasks of
/// the main queue, and only while this object exists.
class DDCQueue {
 public:
  DDCQueue(Runtime& machineRuntime, std::shared_ptr<DisplayRegistry> displayRegistry,
           std::shared_ptr<const AppleDisplayBackend> appleDisplayBackend);

  /// Blocks until the monitor is read.
  MonitorReading readNow(DisplayID display);

  /// One raw reading; blocks.
  std::optional<VCPReading> probe(DisplayID display);

  void read(DisplayID display, std::function<void(const MonitorReading&)> take);

  /// Reads every online external display that display services can't control; those without a
  /// channel are left out. `take` is called even when this object is gone, then with no readings.
  void readAll(std::function<void(const std::vector<MonitorReading>&)> take);

  /// Gives the percents of the candidates that are worth asking and answered.
  void reread(std::vector<RereadCandidate> candidates,
              std::function<void(const std::map<DisplayID, Percent>&)> take);

  /// Walks the registry anew.
  void rescan();

  /// Whether a monitor was written to so shortly before `now` that it may still report the level
  /// before.
  static bool isFreshlyWritten(std::optional<Instant> lastWrite, Instant now);

 private:
  /// `work` on the queue, then `take` with its result on the main queue.
  template <typename Work, typename Take>
  void inBackground(Work work, Take take);

  Runtime& runtime;
  const std::shared_ptr<SerialQueue> queue;
  const std::shared_ptr<DisplayRegistry> registry;
  const std::shared_ptr<const AppleDisplayBackend> appleDisplays;
  LivenessAnchor anchor;
};

}  // namespace brivane
