#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// The application's icon: the mark on a night sky.
struct AppIconArtwork {
  /// Width and height of the canvas, margin included.
  static constexpr double canvas = 1024;

  DisplayList body() const;
};

}  // namespace brivane
