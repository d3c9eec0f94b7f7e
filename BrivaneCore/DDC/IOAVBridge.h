#pragma once

#include <mutex>
#include <string_view>

#include "BrivaneCore/Seams/SymbolLoader.h"

namespace brivane {

/// The three private I2C entry points, each looked up once, on first use. Any thread.
class IOAVBridge {
 public:
  explicit IOAVBridge(SymbolLoader& symbolLoader);

  /// Empty functions when the machine does not have them.
  const CreateAVServiceFunction& createWithService() const;
  const WriteI2CFunction& writeI2C() const;
  const ReadI2CFunction& readI2C() const;

  /// Whether all three are there.
  bool isComplete() const;

 private:
  template <typename Function>
  const Function& resolveOnce(std::once_flag& resolved, Function& function,
                              std::string_view name) const;
  Symbol resolve(std::string_view name) const;
  LibraryHandle handle() const;

  SymbolLoader& loader;
  mutable std::once_flag opened;
  mutable LibraryHandle library = 0;
  mutable std::once_flag createResolved;
  mutable std::once_flag writeResolved;
  mutable std::once_flag readResolved;
  mutable CreateAVServiceFunction create;
  mutable WriteI2CFunction write;
  mutable ReadI2CFunction read;
};

}  // namespace brivane
