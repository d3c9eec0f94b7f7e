#pragma once

#include <IOKit/IOKitLib.h>

#include <utility>

namespace brivane {

/// An owned reference to an object of the I/O registry. May be empty.
class IOObject {
 public:
  IOObject() = default;
  explicit IOObject(io_object_t ownedObject) : object(ownedObject) {}
  IOObject(IOObject&& other) noexcept : object(std::exchange(other.object, IO_OBJECT_NULL)) {}
  IOObject& operator=(IOObject&& other) noexcept {
    std::swap(object, other.object);
    return *this;
  }
  IOObject(const IOObject&) = delete;
  IOObject& operator=(const IOObject&) = delete;
  ~IOObject() {
    if (object != IO_OBJECT_NULL) IOObjectRelease(object);
  }

  io_object_t get() const { return object; }
  explicit operator bool() const { return object != IO_OBJECT_NULL; }

 private:
  io_object_t object = IO_OBJECT_NULL;
};

}  // namespace brivane
