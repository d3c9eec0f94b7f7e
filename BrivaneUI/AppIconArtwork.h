#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// The application's icon: the mark on a night sky that it lights up.
struct AppIconArtwork {
  /// Width and height of the canvas, of which the icon leaves a margin free.
  static constexpr double canvas = 1024;

  DisplayList body() const;
};

}  // namespace brivane
