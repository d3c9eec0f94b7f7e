// A display is never dimmed and brightened at once. On the way to a software effect the hardware is
// moved to the near end of its range by a write that doesn't count as the user's, which would end
// the effect again.

#include "BrivaneCore/Policy/AbsoluteLevelSetter.h"

#include <algorithm>

#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

void moveHardware(DDCDisplayCoordinator& coordinator, Percent percent, DisplayID display) {
  const bool isThere = lookUp(coordinator.levelCache.percents, display) == percent;
  if (!isThere && coordinator.write(percent, display, false)) return;
  coordinator.replaceAwaitedLevel(percent, display);
}

}  // namespace

bool AbsoluteLevelSetter::setLevel(Percent level, DisplayID display) const {
  const auto range = settings.levelRange();
  const auto target = std::max(std::min(level, range.upper), range.lower);
  auto& brightening = brighteningFactory->brightening(display);
  if (target < 0) {
    if (brightening.amount(display) >= 1) brightening.restore(display);
    moveHardware(coordinator, 0, display);
    return dimmer->apply(-target, display);
  }
  if (target <= 100) return coordinator.write(target, display, true);
  if (dimmer->amount(display) >= 1) dimmer->restore(display);
  moveHardware(coordinator, 100, display);
  return brightening.apply(target - 100, display);
}

}  // namespace brivane
