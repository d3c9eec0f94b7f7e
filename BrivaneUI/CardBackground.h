#pragma once

#include "BrivaneUI/Appearance.h"
#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// The rounded card that the HUD's content lies on, with its border.
struct CardBackground {
  double cornerRadius = 0;

  DisplayList body(const Rect& frame, Appearance appearance) const;
};

}  // namespace brivane
