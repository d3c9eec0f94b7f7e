// The two brighteners write the same table: the one that takes a boost over writes its own ramp,
// and the other only forgets the boost. The larger of two amounts is carried, so that the picture
// never darkens when a display gains or loses headroom.

#include "BrivaneCore/Gamma/DisplayBrighteningFactory.h"

#include <algorithm>
#include <utility>

namespace brivane {
namespace {

// Whether nothing is left to be handed over.
bool handOver(DisplayID display, DisplayBrightening& loser, DisplayBrightening& chosen) {
  const auto boost = loser.amount(display);
  if (boost < 1) return true;
  if (!chosen.apply(std::max(chosen.amount(display), boost), display)) return false;
  loser.relinquish(display);
  return true;
}

}  // namespace

DisplayBrighteningFactory::DisplayBrighteningFactory(
    std::shared_ptr<DisplayBrightening> extendedRangeBrightening,
    std::shared_ptr<DisplayBrightening> fallbackBrightening, HeadroomMeasure headroomMeasure)
    : extendedRange(std::move(extendedRangeBrightening)),
      fallback(std::move(fallbackBrightening)),
      measureHeadroom(std::move(headroomMeasure)) {}

DisplayBrightening& DisplayBrighteningFactory::brightening(DisplayID display) {
  const auto known = resolved.find(display);
  if (known != resolved.end()) return *known->second;
  const auto headroom = measureHeadroom(display);
  const bool isExtended = headroom && *headroom > 1.0;
  auto& chosen = isExtended ? *extendedRange : *fallback;
  auto& loser = isExtended ? *fallback : *extendedRange;
  const bool isSettled = handOver(display, loser, chosen);
  // A display in transition has no screen; measure it again at the next call.
  if (headroom && isSettled) resolved[display] = &chosen;
  return chosen;
}

void DisplayBrighteningFactory::invalidateAll() {
  resolved.clear();
}

}  // namespace brivane
