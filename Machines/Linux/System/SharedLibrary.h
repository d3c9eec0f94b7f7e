#pragma once

#include <dlfcn.h>

namespace brivane {

/// A library that is loaded when somebody first needs it, so that programs which never do don't pay
/// for it, and whose absence is no failure of the program. It stays loaded.
class SharedLibrary {
 public:
  /// `fileName` as the linker's tables have it, as "libsystemd.so.0".
  explicit SharedLibrary(const char* fileName) : handle(::dlopen(fileName, RTLD_LAZY)) {}

  /// Takes the function of that name; whether it is there.
  template <typename Function>
  bool find(const char* name, Function*& function) const {
    if (handle == nullptr) return false;
    function = reinterpret_cast<Function*>(::dlsym(handle, name));
    return function != nullptr;
  }

 private:
  void* const handle;
};

}  // namespace brivane
