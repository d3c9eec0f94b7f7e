// The compiler lists every class, category and selector of the program in sections whose names are
// C identifiers, for which the linker makes symbols of their ends. All of it is read before any
// constructor of the program runs.
#include "Tests/Mac/Machine/ObjC/Classes.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

using brivane::objc::Category;
using brivane::objc::Class;
using brivane::objc::Selector;

extern "C" {
#define SECTION_OF(type, name)                                              \
  extern type __start_##name[] __attribute__((weak, visibility("hidden"))); \
  extern type __stop_##name[] __attribute__((weak, visibility("hidden")));
SECTION_OF(Class*, objc_classlist)
SECTION_OF(Category*, objc_catlist)
SECTION_OF(Selector, objc_selrefs)

extern void* _NSConcreteStackBlock[];
extern void* _NSConcreteMallocBlock[];
extern void* _NSConcreteGlobalBlock[];

/// The class of string literals, by name only: plain C++ files have such literals too.
__attribute__((weak)) char __CFConstantStringClassReference[sizeof(Class)];
void* _objc_empty_cache[4];
}

namespace brivane::objc {
namespace {

struct Loaded {
  std::unordered_map<Selector, Implementation> methods;
  bool isRealized = false;
  bool isInitialized = false;
};

__attribute__((init_priority(150))) std::recursive_mutex theLock;
__attribute__((init_priority(150))) std::unordered_map<const Class*, Loaded> classes;
__attribute__((init_priority(150))) std::unordered_map<std::string, Class*> classesByName;
__attribute__((init_priority(150))) std::unordered_set<std::string> selectors;

/// A category's methods come later and take the place of the class's own.
void addMethods(Class* owner, MethodList* list) {
  if (list == nullptr) return;
  for (std::uint32_t index = 0; index < list->count; ++index) {
    Method& method = list->methods[index];
    method.name = selector(method.name);
    classes[owner].methods[method.name] = method.implementation;
  }
}

/// The compiler has laid out the variables as if the superclass had those of its header alone.
void moveVariables(Class* type) {
  ClassData& data = *type->data;
  if (type->superclass == nullptr || data.instanceStart >= type->superclass->data->instanceSize) {
    return;
  }
  const std::uint32_t missing = type->superclass->data->instanceSize - data.instanceStart;
  const std::uint32_t shift = (missing + 15) & ~15U;
  for (std::uint32_t index = 0; data.variables != nullptr && index < data.variables->count;
       ++index) {
    *data.variables->variables[index].offset += shift;
  }
  data.instanceStart += shift;
  data.instanceSize += shift;
}

void realize(Class* type) {
  Loaded& loaded = classes[type];
  if (loaded.isRealized) return;
  loaded.isRealized = true;
  if (type->superclass != nullptr) realize(type->superclass);
  moveVariables(type);
  addMethods(type, type->data->methods);
  addMethods(type->isa, type->isa->data->methods);
  classesByName[type->data->name] = type;
}

struct Start {
  Start() {
    for (auto* name = __start_objc_selrefs; name < __stop_objc_selrefs; ++name) {
      *name = selector(*name);
    }
    for (auto* type = __start_objc_classlist; type < __stop_objc_classlist; ++type) {
      classes[*type];
      classes[(*type)->isa];
    }
    for (auto* type = __start_objc_classlist; type < __stop_objc_classlist; ++type) realize(*type);
    for (auto* category = __start_objc_catlist; category < __stop_objc_catlist; ++category) {
      addMethods((*category)->extended, (*category)->instanceMethods);
      addMethods((*category)->extended->isa, (*category)->classMethods);
    }
  }
};
__attribute__((init_priority(200))) const Start start;

/// A class hears of its first message before it gets it.
void initialize(Object* receiver) {
  const auto found = classes.find(static_cast<const Class*>(receiver));
  if (found == classes.end() || found->second.isInitialized) return;
  found->second.isInitialized = true;
  static const Selector name = selector("initialize");
  const Implementation implementation = findImplementation(receiver->isa, name);
  if (implementation == nullptr) return;
  reinterpret_cast<void (*)(Object*, Selector)>(implementation)(receiver, name);
}

Implementation required(Class* from, Selector name) {
  const Implementation found = findImplementation(from, name);
  if (found == nullptr) fail(std::string(from->data->name) + " does not recognise " + name);
  return found;
}

}  // namespace

std::recursive_mutex& lock() {
  return theLock;
}

Selector selector(const char* name) {
  const std::lock_guard guard(theLock);
  return selectors.emplace(name).first->c_str();
}

Class* classNamed(const std::string& name) {
  const std::lock_guard guard(theLock);
  const auto found = classesByName.find(name);
  return found == classesByName.end() ? nullptr : found->second;
}

bool isBlock(const Object* object) {
  const void* const isa = object->isa;
  return isa == _NSConcreteStackBlock || isa == _NSConcreteMallocBlock ||
         isa == _NSConcreteGlobalBlock;
}

bool isImmortal(const Object* object) {
  if (static_cast<const void*>(object->isa) == __CFConstantStringClassReference) return true;
  const std::lock_guard guard(theLock);
  return classes.contains(static_cast<const Class*>(object));
}

Class* classOf(const Object* object) {
  if (isBlock(object)) return classNamed("TestBlock");
  if (static_cast<const void*>(object->isa) == __CFConstantStringClassReference) {
    return classNamed("NSConstantString");
  }
  return object->isa;
}

Implementation ownImplementation(Class* owner, Selector name) {
  const std::lock_guard guard(theLock);
  const auto loaded = classes.find(owner);
  if (loaded == classes.end()) return nullptr;
  const auto found = loaded->second.methods.find(name);
  return found == loaded->second.methods.end() ? nullptr : found->second;
}

Implementation findImplementation(Class* from, Selector name) {
  for (Class* type = from; type != nullptr; type = type->superclass) {
    if (const Implementation found = ownImplementation(type, name)) return found;
  }
  return nullptr;
}

void fail(const std::string& sentence) {
  std::fprintf(stderr, "Objective-C run time: %s\n", sentence.c_str());
  std::abort();
}

}  // namespace brivane::objc

extern "C" {
brivane::objc::Implementation brivaneTestMessage(brivane::objc::Object* receiver, Selector name) {
  const std::lock_guard guard(brivane::objc::lock());
  brivane::objc::initialize(receiver);
  return brivane::objc::required(brivane::objc::classOf(receiver), name);
}

brivane::objc::Implementation brivaneTestSuperMessage(const brivane::objc::SuperReceiver* receiver,
                                                      Selector name) {
  const std::lock_guard guard(brivane::objc::lock());
  return brivane::objc::required(receiver->current->superclass, name);
}
}
