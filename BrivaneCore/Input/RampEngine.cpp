#include "BrivaneCore/Input/RampEngine.h"

#include <algorithm>
#include <limits>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

std::int64_t wholePoints(double points) {
  constexpr double twoToThe63rd = 9223372036854775808.0;
  if (!(points >= -twoToThe63rd && points < twoToThe63rd)) {
    fatal("a held key's ramp gives a number of points outside the 64-bit range");
  }
  return static_cast<std::int64_t>(points);
}

std::int64_t divided(std::int64_t points, std::int64_t grid) {
  if (grid == 0) fatal("a held key's ramp has a grid of 0");
  if (points == std::numeric_limits<std::int64_t>::min() && grid == -1) {
    fatal("a held key's ramp gives a number of steps outside the 64-bit range");
  }
  return points / grid;
}

}  // namespace

std::int64_t RampEngine::maximumRampStep(const RampProfile& profile) {
  const std::int64_t points = wholePoints(40 / profile.fullRangeDuration);
  return std::max(divided(points, profile.grid) * profile.grid, profile.grid);
}

RampEngine::RampStep RampEngine::rampDelta(double elapsed, double carry,
                                           const RampProfile& profile) {
  if (!(elapsed > 0)) return {0, carry};
  const double raw = (100 / profile.fullRangeDuration) * elapsed + carry;
  const std::int64_t units = divided(wholePoints(raw), profile.grid);
  const std::int64_t maximumUnits = divided(maximumRampStep(profile), profile.grid);
  if (maximumUnits < units) return {maximumUnits * profile.grid, 0};
  const std::int64_t delta = units * profile.grid;
  return {delta, raw - static_cast<double>(delta)};
}

}  // namespace brivane
