#pragma once

#include <optional>

#include "BrivaneCore/Seams/Applications.h"

namespace brivane {

/// The first running application with this program's bundle identifier that is not this process;
/// nothing when there is none, and always nothing outside an application bundle.
std::optional<ProcessID> otherRunningInstance(Applications& applications);

}  // namespace brivane
