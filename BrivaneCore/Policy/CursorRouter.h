#pragma once

#include <optional>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// Decides which display a key press is meant for. Main thread.
class CursorRouter {
 public:
  explicit CursorRouter(DisplaySystem& displaySystem);

  /// The display of the screen that the pointer is on; never 0. Nothing when the pointer is off
  /// every screen and when that screen has no number.
  std::optional<DisplayID> displayUnderCursor() const;

 private:
  DisplaySystem& displays;
};

}  // namespace brivane
