#pragma once

#include <IOKit/IOKitLib.h>

#include "Tests/Mac/Machine/Fakes/FakeMac.h"

namespace brivane::fake {

/// The node that the live entry is.
const Node& registryNode(io_object_t entry);

}  // namespace brivane::fake
