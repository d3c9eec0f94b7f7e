#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace brivane {

/// An owned reference to a CoreFoundation object, as functions with "Create" or "Copy" in their
/// names return. May be empty.
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

  /// Gives up ownership; the caller must release the object.
  [[nodiscard]] Object release() { return std::exchange(object, nullptr); }

 private:
  Object object = nullptr;
};

}  // namespace brivane
