// The I2C calls are private: a machine may lack them, and where they live has moved between system
// versions. So each is looked up where it belongs and then in everything that is loaded already,
// and an answer, even "not there", is kept.

#include "BrivaneCore/DDC/IOAVBridge.h"

#include <string_view>
#include <utility>
#include <variant>

namespace brivane {
namespace {

constexpr std::string_view ioKitPath = "/System/Library/Frameworks/IOKit.framework/IOKit";

}  // namespace

IOAVBridge::IOAVBridge(SymbolLoader& symbolLoader) : loader(symbolLoader) {}

const CreateAVServiceFunction& IOAVBridge::createWithService() const {
  return resolveOnce(createResolved, create, "IOAVServiceCreateWithService");
}

const WriteI2CFunction& IOAVBridge::writeI2C() const {
  return resolveOnce(writeResolved, write, "IOAVServiceWriteI2C");
}

const ReadI2CFunction& IOAVBridge::readI2C() const {
  return resolveOnce(readResolved, read, "IOAVServiceReadI2C");
}

bool IOAVBridge::isComplete() const {
  return createWithService() != nullptr && writeI2C() != nullptr && readI2C() != nullptr;
}

template <typename Function>
const Function& IOAVBridge::resolveOnce(std::once_flag& resolved, Function& function,
                                        std::string_view name) const {
  std::call_once(resolved, [&] {
    Symbol symbol = resolve(name);
    if (auto* const found = std::get_if<Function>(&symbol)) function = std::move(*found);
  });
  return function;
}

Symbol IOAVBridge::resolve(std::string_view name) const {
  if (const LibraryHandle framework = handle(); framework != 0) {
    Symbol symbol = loader.find(framework, name);
    if (!std::holds_alternative<std::monostate>(symbol)) return symbol;
  }
  return loader.find(globalNamespace, name);
}

LibraryHandle IOAVBridge::handle() const {
  std::call_once(opened, [this] { library = loader.open(ioKitPath, lazyBinding); });
  return library;
}

}  // namespace brivane
