#pragma once

#include <string_view>

#include "BrivaneCore/Seams/SymbolLoader.h"
#include "BrivaneCore/Support/Lazy.h"

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
  const Function& resolved(const Lazy<Function>& function, std::string_view name) const;
  Symbol resolve(std::string_view name) const;

  SymbolLoader& loader;
  const Lazy<LibraryHandle> handle;
  const Lazy<CreateAVServiceFunction> create;
  const Lazy<WriteI2CFunction> write;
  const Lazy<ReadI2CFunction> read;
};

}  // namespace brivane
