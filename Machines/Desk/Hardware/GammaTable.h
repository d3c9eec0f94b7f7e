#pragma once

#include <cstdint>

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/Hardware/HardwareState.h"

namespace brivane {

/// The table with which a display starts.
GammaTable calibratedTable(const GammaDescription& gamma);

/// The table with `count` samples, 2 or more, per channel, interpolated linearly.
GammaTable resampled(const GammaTable& table, std::uint32_t count);

}  // namespace brivane
