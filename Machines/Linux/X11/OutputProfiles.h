#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Machines/Linux/X11/XOutputs.h"

namespace brivane {

/// The bytes of an ICC profile; empty where a display has none.
using ProfileBytes = std::vector<std::uint8_t>;

/// The ICC profile of each output, in the same order. Colour managers store profiles on the server:
/// in the output's property "_ICC_PROFILE" or, the older way, in the root window's, which for the
/// n-th further monitor is "_ICC_PROFILE_n". The output's own property has precedence.
std::vector<ProfileBytes> readOutputProfiles(const XServer& server,
                                             std::span<const XOutput> outputs);

}  // namespace brivane
