#pragma once

#include <atomic>

#include "Machines/Linux/DDC/BusTroubles.h"

namespace brivane {

/// The access that calls have found missing; each flag is from the latest call. Any thread.
struct MissingAccess {
  /// There is no "/dev/i2c-N".
  std::atomic<bool> noBuses = false;
  BusTroubles buses;
  /// "brivane-hidutil" may not change the keyboards' keymaps.
  std::atomic<bool> keymapsDenied = false;
  /// This user may not set the built-in panel's backlight.
  std::atomic<bool> backlightDenied = false;
};

}  // namespace brivane
