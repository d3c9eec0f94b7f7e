#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// A fingerprint of which screens there are and where they lie. It tells a real change of the
/// displays from the many announcements of changed screens behind which nothing changed.
struct DisplayArrangement {
  /// One per screen, sorted: "<display>:<x>,<y>,<width>,<height>", the frame's numbers in points
  /// and cut off to whole ones; display 0 for a screen without a number.
  std::vector<std::string> entries;

  /// Main thread.
  static DisplayArrangement current(DisplaySystem& displays);

  bool operator==(const DisplayArrangement&) const = default;
};

}  // namespace brivane
