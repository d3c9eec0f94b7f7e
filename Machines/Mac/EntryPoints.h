#pragma once

#include <string_view>

#include "BrivaneCore/Seams/SymbolLoader.h"

namespace brivane {

/// The named function at `address`, as a function of the seam's type; nothing for unknown names.
Symbol symbolAt(void* address, std::string_view name);

}  // namespace brivane
