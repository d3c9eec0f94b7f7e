// The card may lie over any picture. It is nearly opaque, to keep its text's contrast, and its
// border is lit from above, to show its edge on every background.
#include "BrivaneUI/CardBackground.h"

#include "BrivaneUI/DynamicColor.h"

namespace brivane {
namespace {

constexpr double borderWidth = 1;
constexpr DynamicColor background{{0.965, 0.965, 0.975, 0.96}, {0.125, 0.125, 0.14, 0.95}};
constexpr DynamicColor borderTop{{0, 0, 0, 0.08}, {1, 1, 1, 0.34}};
constexpr DynamicColor borderBottom{{0, 0, 0, 0.18}, {1, 1, 1, 0.08}};

/// A stroke is centred on its shape's edge; the inset keeps it inside the card.
RoundedRectangle borderShape(const Rect& frame, double cornerRadius) {
  const double inset = borderWidth / 2;
  return {{frame.x + inset, frame.y + inset, frame.width - borderWidth, frame.height - borderWidth},
          cornerRadius - inset};
}

}  // namespace

DisplayList CardBackground::body(const Rect& frame, Appearance appearance) const {
  const LinearGradient border{
      {frame.x, frame.y + frame.height},
      {frame.x, frame.y},
      {{0, borderTop.resolved(appearance)}, {1, borderBottom.resolved(appearance)}},
  };
  const Paint fill = background.resolved(appearance);
  return {FilledRectangle{{frame, cornerRadius}, fill},
          StrokedRectangle{borderShape(frame, cornerRadius), borderWidth, border}};
}

}  // namespace brivane
