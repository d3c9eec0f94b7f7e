#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneUI/Frame/StatusItem.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// A slider's menu and its position there.
struct SliderPlace {
  MenuView& menu;
  std::size_t index = 0;
};

/// One display's slider: paces the writes of a drag, as a monitor takes tens of milliseconds for
/// each, and otherwise follows the display's level. Main thread.
class BrightnessSliderRow {
 public:
  using Apply = std::function<void(Percent level)>;

  /// `levels` is the slider's range; `applyLevel` writes a level for the row's display. Destroying
  /// the row drops a pending write; call `flush` first to make it.
  BrightnessSliderRow(Runtime& programRuntime, SliderPlace place, PercentRange levels,
                      Apply applyLevel);
  ~BrightnessSliderRow();
  BrightnessSliderRow(const BrightnessSliderRow&) = delete;
  BrightnessSliderRow& operator=(const BrightnessSliderRow&) = delete;

  /// The menu item for the row's place. It calls the row, which must outlive it.
  MenuSlider item(const StringCatalogue& catalogue, const std::string& displayName,
                  Percent percent);

  /// Moves the slider to the level, or to the nearer end, unless a write is pending or recent or
  /// the slider is within 1 of the level.
  void follow(Percent level);

  bool hasWaitingWrite() const { return pendingValue.has_value(); }

  /// Makes the pending write, if any.
  void flush();

 private:
  double position(Percent level) const;
  void sliderMoved(double value);
  double secondsSinceLastWrite() const;

  const SliderPlace slider;
  const Apply apply;
  const PercentRange range;
  /// Absent before the first write.
  std::optional<Instant> lastWrite;
  std::optional<Percent> pendingValue;
  /// 0 when none is scheduled.
  TimerID flushWork = 0;

  Runtime& runtime;
  LivenessAnchor anchor;
};

}  // namespace brivane
