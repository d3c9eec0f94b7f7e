// The rest of what compiled Objective-C and its headers call: short cuts for common messages,
// properties, and questions about classes.
#include <cstdio>
#include <cstring>

#include "Tests/Mac/Machine/ObjC/Classes.h"
#include "Tests/Mac/Machine/ObjC/Objects.h"

using brivane::objc::Class;
using brivane::objc::Implementation;
using brivane::objc::Object;
using brivane::objc::Selector;

extern "C" {
Implementation brivaneTestMessage(Object* receiver, Selector name);
}

namespace {

Object* send(Object* receiver, const char* name) {
  if (receiver == nullptr) return nullptr;
  const Selector message = brivane::objc::selector(name);
  const Implementation found = brivaneTestMessage(receiver, message);
  return reinterpret_cast<Object* (*)(Object*, Selector)>(found)(receiver, message);
}

Object** variable(Object* object, long offset) {
  return reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset);
}

void setProperty(Object* object, long offset, Object* value, bool copies) {
  Object* const kept = copies ? send(value, "copy") : brivane::objc::retain(value);
  Object** const place = variable(object, offset);
  Object* const old = *place;
  *place = kept;
  brivane::objc::release(old);
}

}  // namespace

extern "C" {
Selector sel_registerName(const char* name) {
  return brivane::objc::selector(name);
}

const char* sel_getName(Selector name) {
  return name;
}

Class* object_getClass(Object* object) {
  return object == nullptr ? nullptr : brivane::objc::classOf(object);
}

const char* class_getName(const Class* type) {
  return type->data->name;
}

Class* class_getSuperclass(const Class* type) {
  return type->superclass;
}

Class* objc_getClass(const char* name) {
  return brivane::objc::classNamed(name);
}

bool class_respondsToSelector(Class* type, Selector name) {
  return brivane::objc::findImplementation(type, name) != nullptr;
}

Object* objc_alloc(Class* type) {
  return send(type, "alloc");
}

Object* objc_allocWithZone(Class* type) {
  return send(type, "alloc");
}

Object* objc_alloc_init(Class* type) {
  return send(objc_alloc(type), "init");
}

Object* objc_opt_new(Class* type) {
  return send(type, "new");
}

Object* objc_opt_self(Object* object) {
  return object;
}

Class* objc_opt_class(Object* object) {
  return static_cast<Class*>(send(object, "class"));
}

bool objc_opt_isKindOfClass(Object* object, const Class* type) {
  for (const Class* own = object_getClass(object); own != nullptr; own = own->superclass) {
    if (own == type) return true;
  }
  return false;
}

bool objc_opt_respondsToSelector(Object* object, Selector name) {
  return object != nullptr && class_respondsToSelector(brivane::objc::classOf(object), name);
}

Object* objc_getProperty(Object* object, Selector, long offset, bool) {
  return brivane::objc::autorelease(brivane::objc::retain(*variable(object, offset)));
}

void objc_setProperty_atomic(Object* object, Selector, Object* value, long offset) {
  setProperty(object, offset, value, false);
}

void objc_setProperty_nonatomic(Object* object, Selector, Object* value, long offset) {
  setProperty(object, offset, value, false);
}

void objc_setProperty_atomic_copy(Object* object, Selector, Object* value, long offset) {
  setProperty(object, offset, value, true);
}

void objc_setProperty_nonatomic_copy(Object* object, Selector, Object* value, long offset) {
  setProperty(object, offset, value, true);
}

void objc_copyStruct(void* target, const void* source, long size, bool, bool) {
  std::memmove(target, source, static_cast<std::size_t>(size));
}

[[noreturn]] void objc_enumerationMutation(Object*) {
  brivane::objc::fail("a collection was changed while it was enumerated");
}
}
