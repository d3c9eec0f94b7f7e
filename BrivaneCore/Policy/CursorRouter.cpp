#include "BrivaneCore/Policy/CursorRouter.h"

#include <algorithm>

namespace brivane {

CursorRouter::CursorRouter(DisplaySystem& displaySystem) : displays(displaySystem) {}

std::optional<DisplayID> CursorRouter::displayUnderCursor() const {
  const auto pointer = displays.pointerPosition();
  const auto screens = displays.screens();
  const auto match = std::ranges::find_if(
      screens, [pointer](const Screen& screen) { return mouseInRect(pointer, screen.frame); });
  // A screen without a number ends the search, even if a later one has the pointer as well.
  if (match == screens.end() || match->number.value_or(0) == 0) return std::nullopt;
  return match->number;
}

}  // namespace brivane
