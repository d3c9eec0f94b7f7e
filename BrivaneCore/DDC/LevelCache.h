#pragma once

#include <cstdint>
#include <map>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"

namespace brivane {

/// The results of the displays' last successful reads and writes in this run. A display with a
/// native maximum counts as answering DDC/CI. Main thread.
struct LevelCache {
  /// Last hardware percent, 0 to 100.
  std::map<DisplayID, Percent> percents;
  /// The maximum that the monitor reports for its luminance.
  std::map<DisplayID, std::int64_t> nativeMaxes;

  void store(Percent percent, std::int64_t nativeMax, DisplayID display) {
    percents[display] = percent;
    nativeMaxes[display] = nativeMax;
  }
};

}  // namespace brivane
