#pragma once

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/Appearance.h"

namespace brivane {

/// The appearance of a machine that has its own, used instead of the real desktop's. Main thread.
class AppearanceSource {
 public:
  virtual ~AppearanceSource() = default;

  virtual Appearance appearance() = 0;
  /// The handler is called after each change.
  virtual Observation observe(Task handler) = 0;
};

}  // namespace brivane
