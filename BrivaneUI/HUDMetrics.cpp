#include "BrivaneUI/HUDMetrics.h"

#include "BrivaneUI/Strings.h"

namespace brivane {

HUDMetrics HUDMetrics::standard(const StringCatalogue& strings) {
  return {
      .width = 360,
      .height = 54,
      .cornerRadius = 24,
      .iconSize = 18,
      .iconColumnWidth = 21,
      .valueSize = 15,
      .valueColumnWidth = 38,
      .barHeight = 6,
      .spacing = 15,
      .horizontalPadding = 22,
      .connectingTitle = strings.text(strings::hudConnectingTitle),
      .connectingTitleSize = 13,
      .connectingSubtitleSize = 11,
      .connectingLineSpacing = 1,
      .connectingSpinnerInset = 0,
      .connectingSpinnerScale = ControlSize::small,
  };
}

}  // namespace brivane
