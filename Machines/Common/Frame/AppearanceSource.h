#pragma once

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/Appearance.h"

namespace brivane {

/// A machine that says itself whether it is light or dark, in place of the desktop that its frame
/// is shown on. Main thread.
class AppearanceSource {
 public:
  virtual ~AppearanceSource() = default;

  virtual Appearance appearance() = 0;
  /// The handler is called after each change.
  virtual Observation observe(Task handler) = 0;
};

}  // namespace brivane
