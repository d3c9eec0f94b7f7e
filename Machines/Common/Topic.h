#pragma once

#include "BrivaneCore/Support/Observers.h"

namespace brivane {

/// An announcement of a machine and its observers. Main thread.
using Topic = Observers<>;

}  // namespace brivane
