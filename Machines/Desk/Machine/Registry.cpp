#include "Machines/Desk/Machine/Registry.h"

// Every iteration builds a new tree, as the real registry returns new handles. Only a display's own
// entries depend on its quirks.

namespace brivane {
namespace {

class DeskEntry : public RegistryEntry {
 public:
  DeskEntry(std::shared_ptr<Faults> machineFaults, std::shared_ptr<const DeskEntry> entryAbove,
            std::string entryClass, std::string entryName)
      : faults(std::move(machineFaults)),
        above(std::move(entryAbove)),
        ownClass(std::move(entryClass)),
        ownName(std::move(entryName)) {}

  std::optional<std::string> className() const override {
    if (faults->strikes("RegistryEntry.className")) return std::nullopt;
    return ownClass;
  }

  std::optional<std::string> name() const override {
    if (faults->strikes("RegistryEntry.name")) return std::nullopt;
    return ownName;
  }

  std::optional<PropertyValue> property(std::string_view key) const override {
    if (faults->strikes("RegistryEntry.property")) return std::nullopt;
    const auto found = properties.find(key);
    if (found == properties.end()) return std::nullopt;
    return found->second;
  }

  std::shared_ptr<const RegistryEntry> parent() const override {
    if (faults->strikes("RegistryEntry.parent")) return nullptr;
    return above;
  }

  PropertyValue::Dictionary properties;
  /// Set for AV proxies for which a service can be created.
  std::optional<DisplayID> serviceOf;

 private:
  const std::shared_ptr<Faults> faults;
  const std::shared_ptr<const DeskEntry> above;
  const std::string ownClass;
  const std::string ownName;
};

class DeskIterator : public RegistryIterator {
 public:
  DeskIterator(std::vector<std::shared_ptr<const DeskEntry>> allEntries,
               std::shared_ptr<Faults> machineFaults)
      : entries(std::move(allEntries)), faults(std::move(machineFaults)) {}

  std::shared_ptr<const RegistryEntry> next() override {
    if (faults->strikes("RegistryIterator.next") || position == entries.size()) return nullptr;
    return entries[position++];
  }

 private:
  const std::vector<std::shared_ptr<const DeskEntry>> entries;
  const std::shared_ptr<Faults> faults;
  std::size_t position = 0;
};

/// Adds the property, or the desk file's replacement.
void put(PropertyValue::Dictionary& properties, const char* key,
         const std::optional<PropertyValue>& usual,
         const RegistryDescription::Override& replacement) {
  const auto& value = replacement ? *replacement : usual;
  if (value) properties[key] = *value;
}

PropertyValue whole(std::uint32_t number) {
  return {std::int64_t{number}};
}

PropertyValue::Dictionary panelProperties(const DisplayDescription& display) {
  const auto& quirks = display.registry;
  PropertyValue::Dictionary product;
  put(product, "LegacyManufacturerID", whole(display.vendor), quirks.legacyManufacturerID);
  put(product, "ProductID", whole(display.model), quirks.productID);
  std::optional<PropertyValue> serial;
  if (display.serial != 0) serial = whole(display.serial);
  put(product, "SerialNumber", serial, quirks.serialNumber);
  PropertyValue::Dictionary attributes;
  put(attributes, "ProductAttributes", PropertyValue{product}, quirks.productAttributes);
  PropertyValue::Dictionary properties;
  put(properties, "DisplayAttributes", PropertyValue{attributes}, quirks.displayAttributes);
  return properties;
}

class RegistryBuilder {
 public:
  explicit RegistryBuilder(std::shared_ptr<Faults> machineFaults)
      : faults(std::move(machineFaults)) {
    const auto root = add(nullptr, "IORegistryEntry", "Root");
    platform = add(root, "IOPlatformDevice", "desk");
  }

  void addDisplay(const DisplayDescription& display) {
    const auto& quirks = display.registry;
    const auto& controller = quirks.panelController.empty() ? display.port : quirks.panelController;
    const auto kept = quirks.entries;
    const bool hasPanel = kept != RegistryEntries::noPanel && kept != RegistryEntries::none;
    if (hasPanel) addPanel(display, controller);
    if (kept == RegistryEntries::panelTwice) addPanel(display, controller + "-2");
    if (quirks.hasProxy && kept != RegistryEntries::none) addProxy(display);
  }

  std::vector<std::shared_ptr<const DeskEntry>> entries;

 private:
  using Node = std::shared_ptr<DeskEntry>;

  Node add(Node above, const char* ownClass, const std::string& name) {
    auto node = std::make_shared<DeskEntry>(faults, std::move(above), ownClass, name);
    entries.push_back(node);
    return node;
  }

  void addPanel(const DisplayDescription& display, const std::string& controller) {
    auto node = add(platform, "IOService", controller);
    for (std::int64_t step = 1; step < display.registry.panelDepth; ++step) {
      node = add(node, "IOService", "link-" + std::to_string(step));
    }
    add(node, "IOService", "panel")->properties = panelProperties(display);
  }

  void addProxy(const DisplayDescription& display) {
    const auto& quirks = display.registry;
    const auto channel =
        add(platform, "IOService", quirks.proxyParent.empty() ? display.port : quirks.proxyParent);
    const auto proxy = add(channel, "DCPAVServiceProxy", "av-service");
    const std::string location = display.isBuiltIn ? "Embedded" : "External";
    put(proxy->properties, "Location", PropertyValue{location}, quirks.location);
    if (quirks.serviceCanBeCreated) proxy->serviceOf = display.identifier;
  }

  const std::shared_ptr<Faults> faults;
  Node platform;
};

}  // namespace

std::unique_ptr<RegistryIterator> DeskRegistry::allServices() {
  if (faults->strikes("IORegistry.allServices")) return nullptr;
  RegistryBuilder builder(faults);
  const auto all = displays.all();
  for (const auto& display : all) builder.addDisplay(display);
  return std::make_unique<DeskIterator>(std::move(builder.entries), faults);
}

std::optional<DisplayID> DeskRegistry::displayOfProxy(const RegistryEntry& entry) {
  const auto* const own = dynamic_cast<const DeskEntry*>(&entry);
  return own == nullptr ? std::nullopt : own->serviceOf;
}

}  // namespace brivane
