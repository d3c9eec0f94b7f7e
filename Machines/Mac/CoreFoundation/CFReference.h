#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace brivane {

/// One reference to a CoreFoundation object that the program has to give back: what functions with
/// "Create" or "Copy" in their names return. May be empty.
template <typename Object>
class CFReference {
 public:
  CFReference() = default;
  explicit CFReference(Object ownedObject) : object(ownedObject) {}
  CFReference(CFReference&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
  CFReference& operator=(CFReference&& other) noexcept {
    std::swap(object, other.object);
    return *this;
  }
  CFReference(const CFReference&) = delete;
  CFReference& operator=(const CFReference&) = delete;
  ~CFReference() {
    if (object != nullptr) CFRelease(object);
  }

  /// Borrowed: valid as long as this is.
  Object get() const { return object; }
  explicit operator bool() const { return object != nullptr; }

  /// The object, for somebody else to give back.
  [[nodiscard]] Object release() { return std::exchange(object, nullptr); }

 private:
  Object object = nullptr;
};

}  // namespace brivane
