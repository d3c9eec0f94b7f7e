#include "Machines/Mac/Symbols.h"

#include <dlfcn.h>

#include <string>

#include "Machines/Mac/EntryPoints.h"

namespace brivane {

LibraryHandle MacSymbolLoader::open(std::string_view path, int mode) {
  return reinterpret_cast<LibraryHandle>(::dlopen(std::string(path).c_str(), mode));
}

Symbol MacSymbolLoader::find(LibraryHandle library, std::string_view name) {
  // A handle is dlopen's result, or one of dlsym's special numbers.
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  void* const address = ::dlsym(reinterpret_cast<void*>(library), std::string(name).c_str());
  return address == nullptr ? Symbol() : symbolAt(address, name);
}

}  // namespace brivane
