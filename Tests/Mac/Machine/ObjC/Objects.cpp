// Reference counts, weak references and pools, checked more strictly than on a Mac: an object that
// is released once too often, retained when it is already dying or autoreleased where no pool is
// ends the test program with a sentence.
#include "Tests/Mac/Machine/ObjC/Objects.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Tests/Mac/Machine/ObjC/Classes.h"

extern "C" {
void* _Block_copy(const void* block);
void _Block_release(const void* block);
}

namespace brivane::objc {
namespace {

__attribute__((init_priority(150))) std::unordered_map<std::string, long> counts;
__attribute__((init_priority(150))) std::unordered_multimap<Object*, Object**> weakReferences;

__attribute__((init_priority(150))) std::unordered_set<const Object*> liveOnes;

/// What constants and classes are retained more often than released: they never go.
std::atomic<long> heldConstants = 0;

/// The count of an object whose `dealloc` is running: its own methods may still retain it and give
/// it back.
constexpr long dying = std::numeric_limits<long>::min() / 2;

/// Objects to release, and a null where each pool begins.
thread_local std::vector<Object*> pools;

ObjectHeader* headerOf(Object* object) {
  return reinterpret_cast<ObjectHeader*>(object) - 1;
}

/// Blocks on the stack and constant ones belong to nobody. What this library copies to the heap
/// keeps the class that it had.
bool isOnHeap(const Object* block) {
  constexpr int needsFree = 1 << 24;
  int flags = 0;
  std::memcpy(&flags, block + 1, sizeof flags);
  return (flags & needsFree) != 0;
}

void send(Object* receiver, Implementation implementation, Selector name) {
  reinterpret_cast<void (*)(Object*, Selector)>(implementation)(receiver, name);
}

/// C++ variables, the superclass's first.
void construct(Object* object, Class* type) {
  static const Selector name = selector(".cxx_construct");
  if (type == nullptr) return;
  construct(object, type->superclass);
  if (const Implementation own = ownImplementation(type, name)) send(object, own, name);
}

void forgetWeakReferences(Object* object) {
  const std::lock_guard guard(lock());
  const auto [first, last] = weakReferences.equal_range(object);
  for (auto entry = first; entry != last; ++entry) *entry->second = nullptr;
  weakReferences.erase(object);
}

void forgetWeakReference(Object** place) {
  const auto [first, last] = weakReferences.equal_range(*place);
  for (auto entry = first; entry != last; ++entry) {
    if (entry->second != place) continue;
    weakReferences.erase(entry);
    return;
  }
}

bool isDying(Object* object) {
  return !isBlock(object) && !isImmortal(object) && headerOf(object)->retainCount < 0;
}

void requireAlive(Object* object, const char* deed) {
  const std::lock_guard guard(lock());
  if (!liveOnes.contains(object)) fail(std::string("an object that is gone is ") + deed);
}

}  // namespace

std::map<std::string, long> liveObjects() {
  const std::lock_guard guard(lock());
  std::map<std::string, long> result;
  for (const auto& [name, count] : counts) {
    if (count != 0) result[name] = count;
  }
  if (heldConstants != 0) result["constants"] = heldConstants;
  return result;
}

long liveObjects(const std::string& className) {
  const auto all = liveObjects();
  const auto found = all.find(className);
  return found == all.end() ? 0 : found->second;
}

Object* allocate(Class* type) {
  void* const memory = std::calloc(1, sizeof(ObjectHeader) + type->data->instanceSize);
  auto* const header = new (memory) ObjectHeader{1};
  auto* const object = reinterpret_cast<Object*>(header + 1);
  object->isa = type;
  {
    const std::lock_guard guard(lock());
    ++counts[type->data->name];
    liveOnes.insert(object);
  }
  construct(object, type);
  return object;
}

void deallocate(Object* object) {
  static const Selector name = selector(".cxx_destruct");
  for (Class* type = object->isa; type != nullptr; type = type->superclass) {
    if (const Implementation own = ownImplementation(type, name)) send(object, own, name);
  }
  {
    const std::lock_guard guard(lock());
    --counts[object->isa->data->name];
    liveOnes.erase(object);
  }
  std::free(headerOf(object));
}

Object* retain(Object* object) {
  if (object == nullptr) return object;
  if (isBlock(object)) {
    return isOnHeap(object) ? static_cast<Object*>(_Block_copy(object)) : object;
  }
  if (isImmortal(object)) {
    ++heldConstants;
    return object;
  }
  requireAlive(object, "retained");
  ++headerOf(object)->retainCount;
  return object;
}

void release(Object* object) {
  if (object == nullptr) return;
  if (isBlock(object)) {
    if (isOnHeap(object)) _Block_release(object);
    return;
  }
  if (isImmortal(object)) {
    --heldConstants;
    return;
  }
  requireAlive(object, "released");
  std::atomic<long>& count = headerOf(object)->retainCount;
  if (--count != 0) return;
  forgetWeakReferences(object);
  count = dying;
  static const Selector name = selector("dealloc");
  send(object, findImplementation(object->isa, name), name);
}

Object* autorelease(Object* object) {
  if (object == nullptr) return object;
  if (pools.empty())
    fail(std::string(classOf(object)->data->name) + " is autoreleased into no pool");
  pools.push_back(object);
  return object;
}

}  // namespace brivane::objc

using brivane::objc::Object;

// What the compiler calls for ARC.
extern "C" {
Object* objc_retain(Object* object) {
  return brivane::objc::retain(object);
}

void objc_release(Object* object) {
  brivane::objc::release(object);
}

Object* objc_autorelease(Object* object) {
  return brivane::objc::autorelease(object);
}

Object* objc_retainAutorelease(Object* object) {
  return objc_autorelease(objc_retain(object));
}

Object* objc_autoreleaseReturnValue(Object* object) {
  return objc_autorelease(object);
}

Object* objc_retainAutoreleaseReturnValue(Object* object) {
  return objc_retainAutorelease(object);
}

Object* objc_retainAutoreleasedReturnValue(Object* object) {
  return objc_retain(object);
}

Object* objc_claimAutoreleasedReturnValue(Object* object) {
  return objc_retain(object);
}

Object* objc_unsafeClaimAutoreleasedReturnValue(Object* object) {
  return object;
}

void* objc_retainBlock(const void* block) {
  return block == nullptr ? nullptr : _Block_copy(block);
}

void objc_storeStrong(Object** place, Object* object) {
  objc_retain(object);
  Object* const old = *place;
  *place = object;
  objc_release(old);
}

void* objc_autoreleasePoolPush() {
  brivane::objc::pools.push_back(nullptr);
  return reinterpret_cast<void*>(brivane::objc::pools.size());
}

/// What is released may autorelease more, into the same pool.
void objc_autoreleasePoolPop(void* pool) {
  auto& pools = brivane::objc::pools;
  const auto size = reinterpret_cast<std::size_t>(pool);
  while (pools.size() > size) {
    Object* const object = pools.back();
    pools.pop_back();
    objc_release(object);
  }
  pools.resize(size - 1);
}

Object* objc_storeWeak(Object** place, Object* object) {
  const std::lock_guard guard(brivane::objc::lock());
  if (*place != nullptr) brivane::objc::forgetWeakReference(place);
  const bool isGone = object == nullptr || brivane::objc::isDying(object);
  *place = isGone ? nullptr : object;
  if (!isGone) brivane::objc::weakReferences.emplace(object, place);
  return *place;
}

Object* objc_initWeak(Object** place, Object* object) {
  *place = nullptr;
  return objc_storeWeak(place, object);
}

void objc_destroyWeak(Object** place) {
  objc_storeWeak(place, nullptr);
}

Object* objc_loadWeakRetained(Object** place) {
  const std::lock_guard guard(brivane::objc::lock());
  return objc_retain(*place);
}

Object* objc_loadWeak(Object** place) {
  return objc_autorelease(objc_loadWeakRetained(place));
}

void objc_copyWeak(Object** target, Object** source) {
  const std::lock_guard guard(brivane::objc::lock());
  objc_initWeak(target, *source);
}

void objc_moveWeak(Object** target, Object** source) {
  objc_copyWeak(target, source);
  objc_destroyWeak(source);
}
}
