#pragma once

#include "BrivaneUI/Appearance.h"
#include "BrivaneUI/Color.h"

namespace brivane {

/// A colour with a variant for each appearance.
struct DynamicColor {
  Color light;
  Color dark;

  const Color& resolved(Appearance appearance) const {
    return appearance == Appearance::dark ? dark : light;
  }

  /// White in the dark appearance, black in the light appearance.
  static DynamicColor grey(double alpha) { return {{0, 0, 0, alpha}, {1, 1, 1, alpha}}; }

  bool operator==(const DynamicColor&) const = default;
};

}  // namespace brivane
