#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// A fingerprint of the screens and their places, which tells real changes from the many
/// announcements of changed screens without one.
struct DisplayArrangement {
  /// One per screen, sorted: "<display>:<x>,<y>,<width>,<height>", the frame's numbers in points
  /// and cut off to whole ones; display 0 for a screen without a number.
  std::vector<std::string> entries;

  /// Main thread.
  static DisplayArrangement current(DisplaySystem& displays);

  bool operator==(const DisplayArrangement&) const = default;
};

}  // namespace brivane
