// The arithmetic of levels. Rounding is done in doubles, in a fixed order of operations, so that a
// level that is written and read back lands on the same percent on every machine; limits are
// applied to the double, before it becomes an integer again, so that no input can overflow.

#include "BrivaneCore/Levels/BrightnessVocabulary.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brivane {
namespace {

constexpr Percent fullPercent = 100;

Percent limitedToPercent(double value) {
  return static_cast<Percent>(std::clamp(value, 0.0, static_cast<double>(fullPercent)));
}

}  // namespace

AdjustOutcome AdjustOutcome::handled(DisplayID display, std::string name, Percent level) {
  return {Kind::handled, display, std::move(name), level};
}

AdjustOutcome AdjustOutcome::connecting(DisplayID display, std::string name) {
  return {Kind::connecting, display, std::move(name), 0};
}

AdjustOutcome AdjustOutcome::passThrough() {
  return {};
}

std::string_view describe(BrightnessBackendKind kind) {
  switch (kind) {
    case BrightnessBackendKind::appleDisplay:
      return "appleDisplay";
    case BrightnessBackendKind::ddc:
      return "ddc";
    case BrightnessBackendKind::none:
      break;
  }
  return "none";
}

Percent BrightnessScaling::clamp(Percent percent) {
  return std::clamp<Percent>(percent, 0, fullPercent);
}

std::int64_t BrightnessScaling::rawFromPercent(Percent percent, std::int64_t max) {
  if (max < 1) return 0;
  const auto maximum = static_cast<double>(max);
  const double raw = std::round(static_cast<double>(clamp(percent)) / 100.0 * maximum);
  // A maximum above 2 to the 53rd may have become a larger double; it must come back as itself.
  return raw >= maximum ? max : static_cast<std::int64_t>(raw);
}

Percent BrightnessScaling::percentFromRaw(std::int64_t raw, std::int64_t max) {
  if (max < 1) return 0;
  return limitedToPercent(std::round(static_cast<double>(raw) / static_cast<double>(max) * 100.0));
}

Percent AdjustDecision::snapped(Percent from, std::int64_t direction, Percent step) {
  if (step < 1 || direction == 0) return from;
  const double quotient = static_cast<double>(from) / static_cast<double>(step);
  const double multiple = direction > 0 ? std::floor(quotient) + 1 : std::ceil(quotient) - 1;
  return limitedToPercent(multiple * static_cast<double>(step));
}

}  // namespace brivane
