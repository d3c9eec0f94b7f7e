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

/// A slider in a menu, by its position.
struct SliderPlace {
  MenuView& menu;
  std::size_t index = 0;
};

/// One display's slider. It paces the writes of a drag, since a monitor takes tens of milliseconds
/// for each, and follows the display's level when nobody drags it. Main thread.
class BrightnessSliderRow {
 public:
  using Apply = std::function<void(Percent level)>;

  /// `levels` are the slider's ends; `applyLevel` writes a level for the row's display. A write
  /// that waits when the row is dropped is dropped with it: whoever wants it made flushes first.
  BrightnessSliderRow(Runtime& programRuntime, SliderPlace place, PercentRange levels,
                      Apply applyLevel);
  ~BrightnessSliderRow();
  BrightnessSliderRow(const BrightnessSliderRow&) = delete;
  BrightnessSliderRow& operator=(const BrightnessSliderRow&) = delete;

  /// What to put at the row's place in the menu. It calls the row, which must outlive it there.
  MenuSlider item(const StringCatalogue& catalogue, const std::string& displayName,
                  Percent percent);

  /// Moves the slider to the level, or the end that is nearer to it, unless a write of its own
  /// waits or is just over, or the slider is there.
  void follow(Percent level);

  bool hasWaitingWrite() const { return pendingValue.has_value(); }

  /// Makes the write that waits, if there is one.
  void flush();

 private:
  double position(Percent level) const;
  void sliderMoved(double value);
  double secondsSinceLastWrite() const;

  const SliderPlace slider;
  const Apply apply;
  const PercentRange range;
  /// Absent before the first.
  std::optional<Instant> lastWrite;
  std::optional<Percent> pendingValue;
  /// 0 when none is scheduled.
  TimerID flushWork = 0;

  Runtime& runtime;
  LivenessAnchor anchor;
};

}  // namespace brivane
