// A drag moves a slider far more often than a monitor can take a level. The first move is written
// at once, then the newest after each pause; so the final position is always written.

#include "BrivaneApp/BrightnessSliderRow.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "BrivaneApp/Strings.h"

namespace brivane {
namespace {

constexpr double secondsBetweenWrites = 0.07;
/// For so long after a write a level that is read may be older.
constexpr double secondsOfRestAfterWrite = 0.4;

}  // namespace

BrightnessSliderRow::BrightnessSliderRow(Runtime& programRuntime, SliderPlace place,
                                         PercentRange levels, Apply applyLevel)
    : slider(place), apply(std::move(applyLevel)), range(levels), runtime(programRuntime) {}

BrightnessSliderRow::~BrightnessSliderRow() {
  anchor.kill();
  runtime.cancel(flushWork);
}

MenuSlider BrightnessSliderRow::item(const StringCatalogue& catalogue,
                                     const std::string& displayName, Percent percent) {
  return {static_cast<double>(range.lower), static_cast<double>(range.upper), position(percent),
          catalogue.format(strings::menuSliderAccessibilityLabel, {displayName}),
          [this](double value) { sliderMoved(value); }};
}

void BrightnessSliderRow::follow(Percent level) {
  if (pendingValue || secondsSinceLastWrite() < secondsOfRestAfterWrite) return;
  if (std::abs(position(level) - slider.menu.sliderValue(slider.index)) < 1) return;
  slider.menu.setSliderValue(slider.index, position(level));
}

/// A display may still be dimmed or boosted after a setting has narrowed the range.
double BrightnessSliderRow::position(Percent level) const {
  return static_cast<double>(std::clamp(level, range.lower, range.upper));
}

void BrightnessSliderRow::sliderMoved(double value) {
  const Percent level = std::llround(value);
  if (level == pendingValue) return;
  pendingValue = level;
  const double elapsed = secondsSinceLastWrite();
  if (elapsed >= secondsBetweenWrites) {
    flush();
  } else if (flushWork == 0) {
    flushWork =
        runtime.after(fromSeconds(secondsBetweenWrites - elapsed), [this, watch = anchor.watch()] {
          if (watch.isAlive()) flush();
        });
  }
}

void BrightnessSliderRow::flush() {
  // A late timer must not write right after a move that came before it.
  runtime.cancel(std::exchange(flushWork, 0));
  if (!pendingValue) return;
  const Percent level = *pendingValue;
  pendingValue.reset();
  lastWrite = runtime.now();
  apply(level);
}

double BrightnessSliderRow::secondsSinceLastWrite() const {
  if (!lastWrite) return std::numeric_limits<double>::infinity();
  return secondsBetween(*lastWrite, runtime.now());
}

}  // namespace brivane
