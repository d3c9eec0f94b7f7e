#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Machines/Linux/X11/XOutputs.h"

namespace brivane {

/// The bytes of an ICC profile; empty where a display has none.
using ProfileBytes = std::vector<std::uint8_t>;

/// The ICC profile of each output, in the same order. Colour managers leave profiles on the server:
/// as the property "_ICC_PROFILE" of the output or, the older way, of the root window, where the
/// n-th further monitor has "_ICC_PROFILE_n". An output's own property is the one that counts.
std::vector<ProfileBytes> readOutputProfiles(const XServer& server,
                                             std::span<const XOutput> outputs);

}  // namespace brivane
