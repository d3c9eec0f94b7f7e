#pragma once

#include <string_view>

#include "BrivaneCore/Seams/SymbolLoader.h"

namespace brivane {

/// The function of that name at `address`, in the seam's shape; nothing for other names.
Symbol symbolAt(void* address, std::string_view name);

}  // namespace brivane
