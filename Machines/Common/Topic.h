#pragma once

#include "BrivaneCore/Support/Observers.h"

namespace brivane {

/// Something that a machine announces, and who wants to hear of it. Main thread.
using Topic = Observers<>;

}  // namespace brivane
