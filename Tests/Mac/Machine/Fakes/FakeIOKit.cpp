// The I/O registry, with a count of the references to each of its objects.
#include "Tests/Mac/Machine/Fakes/FakeIOKit.h"

#include <IOKit/IOKitLib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"

namespace brivane::fake {
namespace {

struct IOObjectState {
  int references = 1;
  /// The way from the root to the node, the root first; empty for an iterator.
  std::vector<const Node*> path;
  bool isIterator = false;
  bool isValid = true;
  std::vector<std::vector<const Node*>> ahead;
};

struct IOObjects {
  std::recursive_mutex mutex;
  std::map<io_object_t, IOObjectState> live;
  io_object_t last = 0x1000;
};

IOObjects& objects() {
  static IOObjects all;
  return all;
}

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "IOKit: %s\n", what);
  std::abort();
}

IOObjectState& stateOf(io_object_t object) {
  const auto found = objects().live.find(object);
  if (found == objects().live.end()) fail("an object was used after its last release");
  return found->second;
}

const Node& nodeOf(io_object_t object) {
  const IOObjectState& state = stateOf(object);
  if (state.isIterator) fail("an iterator was used as an entry");
  return *state.path.back();
}

io_object_t add(IOObjectState state) {
  const io_object_t object = ++objects().last;
  objects().live.emplace(object, std::move(state));
  return object;
}

void listBelow(const std::vector<const Node*>& path, std::vector<std::vector<const Node*>>& all) {
  for (const Node& child : path.back()->children) {
    auto longer = path;
    longer.push_back(&child);
    all.push_back(longer);
    listBelow(longer, all);
  }
}

/// What has begun before a change of the registry is over with it.
void endIteratorsAtAChange() {
  auto& left = mac().entriesBeforeChange;
  if (!left || (*left)-- > 0) return;
  left.reset();
  for (auto& [object, state] : objects().live) state.isValid = false;
}

kern_return_t failed(const char* function) {
  return mac().failureOf(function).value_or(KERN_SUCCESS);
}

void copyName(const std::string& text, io_name_t name) {
  std::strncpy(name, text.c_str(), sizeof(io_name_t) - 1);
  name[sizeof(io_name_t) - 1] = '\0';
}

void requirePlane(const char* plane) {
  if (std::strcmp(plane, "IOService") != 0) fail("another plane than IOService was asked for");
}

}  // namespace

const Node& registryNode(io_object_t entry) {
  const std::lock_guard lock(objects().mutex);
  return nodeOf(entry);
}

std::size_t liveIOObjects() {
  const std::lock_guard lock(objects().mutex);
  std::size_t references = 0;
  for (const auto& [object, state] : objects().live) {
    references += static_cast<std::size_t>(state.references);
  }
  return references;
}

}  // namespace brivane::fake

using namespace brivane::fake;  // NOLINT

extern "C" {

const mach_port_t kIOMainPortDefault = 0;

/// Nobody declares it: the program retains no such object, only mistakes do.
kern_return_t IOObjectRetain(io_object_t object) {
  const std::lock_guard lock(objects().mutex);
  ++stateOf(object).references;
  return KERN_SUCCESS;
}

kern_return_t IOObjectRelease(io_object_t object) {
  const std::lock_guard lock(objects().mutex);
  if (--stateOf(object).references == 0) objects().live.erase(object);
  return KERN_SUCCESS;
}

kern_return_t IOObjectGetClass(io_object_t object, io_name_t className) {
  const std::lock_guard lock(objects().mutex);
  copyName(nodeOf(object).className, className);
  return failed("IOObjectGetClass");
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
  const std::lock_guard lock(objects().mutex);
  if (!stateOf(iterator).isIterator) fail("an entry was used as an iterator");
  endIteratorsAtAChange();
  auto& ahead = stateOf(iterator).ahead;
  if (!stateOf(iterator).isValid || ahead.empty()) return IO_OBJECT_NULL;
  const auto path = ahead.front();
  ahead.erase(ahead.begin());
  return add({.path = path});
}

boolean_t IOIteratorIsValid(io_iterator_t iterator) {
  const std::lock_guard lock(objects().mutex);
  if (!stateOf(iterator).isIterator) fail("an entry was used as an iterator");
  // Any number but 0 is yes.
  return stateOf(iterator).isValid ? 2 : 0;
}

io_registry_entry_t IORegistryGetRootEntry(mach_port_t mainPort) {
  const std::lock_guard lock(objects().mutex);
  if (mainPort != kIOMainPortDefault) fail("another port than the main one");
  if (failed("IORegistryGetRootEntry") != KERN_SUCCESS) return IO_OBJECT_NULL;
  return add({.path = {&mac().registry}});
}

kern_return_t IORegistryEntryCreateIterator(io_registry_entry_t entry, const io_name_t plane,
                                            IOOptionBits options, io_iterator_t* iterator) {
  const std::lock_guard lock(objects().mutex);
  requirePlane(plane);
  if (options != kIORegistryIterateRecursively) fail("an iterator that doesn't go down");
  const kern_return_t status = failed("IORegistryEntryCreateIterator");
  if (status != KERN_SUCCESS) return status;
  nodeOf(entry);
  IOObjectState state{.isIterator = true};
  listBelow(stateOf(entry).path, state.ahead);
  *iterator = add(std::move(state));
  return KERN_SUCCESS;
}

kern_return_t IORegistryEntryGetName(io_registry_entry_t entry, io_name_t name) {
  const std::lock_guard lock(objects().mutex);
  copyName(nodeOf(entry).name, name);
  return failed("IORegistryEntryGetName");
}

kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, const io_name_t plane,
                                            io_registry_entry_t* parent) {
  constexpr kern_return_t noDevice = static_cast<kern_return_t>(0xE00002C0);
  const std::lock_guard lock(objects().mutex);
  requirePlane(plane);
  nodeOf(entry);
  auto path = stateOf(entry).path;
  path.pop_back();
  if (path.empty()) return noDevice;
  const kern_return_t status = failed("IORegistryEntryGetParentEntry");
  if (status == KERN_SUCCESS) *parent = add({.path = path});
  return status;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef allocator, IOOptionBits options) {
  const std::lock_guard lock(objects().mutex);
  if (allocator != kCFAllocatorDefault || options != 0) fail("a property with options");
  const auto& properties = nodeOf(entry).properties;
  const auto found = properties.find(stringOf(key));
  return found == properties.end() ? nullptr : makePropertyList(found->second);
}
}
