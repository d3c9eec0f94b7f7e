#pragma once

#include <atomic>
#include <cstdint>

// What the compiler lays down in the object file for classes, methods and categories (modern
// Objective-C, 64 bits), and what stands before every object that this run time allocates.

namespace brivane::objc {

using Implementation = void (*)();
/// Selectors of one name are one pointer once the run time has started.
using Selector = const char*;

struct Method {
  Selector name;
  const char* types;
  Implementation implementation;
};

struct MethodList {
  std::uint32_t entrySize;
  std::uint32_t count;
  Method methods[1];
};

struct InstanceVariable {
  /// The code reads the offset at run time, so a class can move its variables.
  long* offset;
  const char* name;
  const char* type;
  std::uint32_t alignment;
  std::uint32_t size;
};

struct InstanceVariableList {
  std::uint32_t entrySize;
  std::uint32_t count;
  InstanceVariable variables[1];
};

struct ClassData {
  static constexpr std::uint32_t isMetaclass = 1;

  std::uint32_t flags;
  std::uint32_t instanceStart;
  std::uint32_t instanceSize;
  std::uint32_t reserved;
  const std::uint8_t* strongLayout;
  const char* name;
  MethodList* methods;
  void* protocols;
  InstanceVariableList* variables;
  const std::uint8_t* weakLayout;
  void* properties;
};

struct Class;

struct Object {
  Class* isa;
};

struct Class : Object {
  Class* superclass;
  void* cache;
  void* vtable;
  ClassData* data;
};

struct Category {
  const char* name;
  Class* extended;
  MethodList* instanceMethods;
  MethodList* classMethods;
};

/// What `super` is in a message.
struct SuperReceiver {
  Object* receiver;
  Class* current;
};

struct alignas(16) ObjectHeader {
  std::atomic<long> retainCount;
};

}  // namespace brivane::objc
