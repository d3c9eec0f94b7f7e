#pragma once

#include "BrivaneCore/Seams/SymbolLoader.h"

namespace brivane {

/// The dynamic loader. The entry points are private, with unpublished signatures; the name alone
/// determines a function's type.
class MacSymbolLoader : public SymbolLoader {
 public:
  LibraryHandle open(std::string_view path, int mode) override;
  Symbol find(LibraryHandle library, std::string_view name) override;
};

}  // namespace brivane
