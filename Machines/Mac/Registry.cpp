// The system's iterator leaves out the root. An iteration here begins with it, so that every
// entry's parent comes before the entry.
#include "Machines/Mac/Registry.h"

#include "Machines/Mac/CoreFoundation/CFProperty.h"
#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {
namespace {

std::shared_ptr<const RegistryEntry> entryFor(IOObject object) {
  if (!object) return nullptr;
  return std::make_shared<MacRegistryEntry>(std::move(object));
}

class MacRegistryIterator : public RegistryIterator {
 public:
  MacRegistryIterator(IOObject ownedRoot, IOObject ownedIterator)
      : root(std::move(ownedRoot)), iterator(std::move(ownedIterator)) {}

  std::shared_ptr<const RegistryEntry> next() override {
    if (root) return entryFor(std::exchange(root, IOObject()));
    return entryFor(IOObject(IOIteratorNext(iterator.get())));
  }

  bool wasCutShort() const override { return IOIteratorIsValid(iterator.get()) == 0; }

 private:
  IOObject root;
  const IOObject iterator;
};

}  // namespace

std::optional<std::string> MacRegistryEntry::className() const {
  io_name_t text = {};
  if (IOObjectGetClass(entry.get(), text) != KERN_SUCCESS) return std::nullopt;
  return text;
}

std::optional<std::string> MacRegistryEntry::name() const {
  io_name_t text = {};
  if (IORegistryEntryGetName(entry.get(), text) != KERN_SUCCESS) return std::nullopt;
  return text;
}

std::optional<PropertyValue> MacRegistryEntry::property(std::string_view key) const {
  const auto name = makeCFText(key);
  if (!name) return std::nullopt;
  const CFReference value(
      IORegistryEntryCreateCFProperty(entry.get(), name.get(), kCFAllocatorDefault, 0));
  if (!value) return std::nullopt;
  return propertyOf(value.get());
}

std::shared_ptr<const RegistryEntry> MacRegistryEntry::parent() const {
  io_registry_entry_t above = IO_OBJECT_NULL;
  if (IORegistryEntryGetParentEntry(entry.get(), kIOServicePlane, &above) != KERN_SUCCESS) {
    return nullptr;
  }
  return entryFor(IOObject(above));
}

std::unique_ptr<RegistryIterator> MacIORegistry::allServices() {
  IOObject root(IORegistryGetRootEntry(kIOMainPortDefault));
  if (!root) return nullptr;
  io_iterator_t iterator = IO_OBJECT_NULL;
  if (IORegistryEntryCreateIterator(root.get(), kIOServicePlane, kIORegistryIterateRecursively,
                                    &iterator) != KERN_SUCCESS) {
    return nullptr;
  }
  return std::make_unique<MacRegistryIterator>(std::move(root), IOObject(iterator));
}

}  // namespace brivane
