#pragma once

#include <dlfcn.h>

namespace brivane {

/// A library loaded at run time, so that programs that don't need it don't pay for it, and can run
/// without it. It stays loaded.
class SharedLibrary {
 public:
  /// `fileName` is the soname, such as "libsystemd.so.0".
  explicit SharedLibrary(const char* fileName) : handle(::dlopen(fileName, RTLD_LAZY)) {}

  /// Looks the function up; returns whether it exists.
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
