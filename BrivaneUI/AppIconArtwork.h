#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// The application's icon: the mark on a night sky.
struct AppIconArtwork {
  /// Width and height of the canvas, margin included.
  static constexpr double canvas = 1024;
  static constexpr double margin = 100;
  static constexpr double side = canvas - 2 * margin;
  /// The canvas without its margin.
  static constexpr Rect visiblePart{margin, margin, side, side};

  DisplayList body() const;
};

}  // namespace brivane
