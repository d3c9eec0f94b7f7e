// The I2C calls are private: a machine may lack them, and where they live has moved between system
// versions. So each is looked up where it belongs and then in everything that is loaded already,
// and an answer, even "not there", is kept.

#include "BrivaneCore/DDC/IOAVBridge.h"

#include <string_view>
#include <variant>

namespace brivane {
namespace {

constexpr std::string_view ioKitPath = "/System/Library/Frameworks/IOKit.framework/IOKit";

}  // namespace

IOAVBridge::IOAVBridge(SymbolLoader& symbolLoader) : loader(symbolLoader) {}

const CreateAVServiceFunction& IOAVBridge::createWithService() const {
  return resolved(create, "IOAVServiceCreateWithService");
}

const WriteI2CFunction& IOAVBridge::writeI2C() const {
  return resolved(write, "IOAVServiceWriteI2C");
}

const ReadI2CFunction& IOAVBridge::readI2C() const {
  return resolved(read, "IOAVServiceReadI2C");
}

bool IOAVBridge::isComplete() const {
  return createWithService() != nullptr && writeI2C() != nullptr && readI2C() != nullptr;
}

template <typename Function>
const Function& IOAVBridge::resolved(const Lazy<Function>& function, std::string_view name) const {
  return function.get([&] { return functionIn<Function>(resolve(name)); });
}

Symbol IOAVBridge::resolve(std::string_view name) const {
  const auto library = handle.get([this] { return loader.open(ioKitPath, lazyBinding); });
  if (library != 0) {
    Symbol symbol = loader.find(library, name);
    if (!std::holds_alternative<std::monostate>(symbol)) return symbol;
  }
  return loader.find(globalNamespace, name);
}

}  // namespace brivane
