#include "Machines/Linux/Registry.h"

#include <cstdint>
#include <cstdio>
#include <utility>

#include "Machines/Linux/System/EDID.h"

namespace brivane {
namespace {

using Entry = std::shared_ptr<LinuxRegistryEntry>;

class Pass : public RegistryIterator {
 public:
  explicit Pass(std::vector<Entry> allEntries) : entries(std::move(allEntries)) {}

  std::shared_ptr<const RegistryEntry> next() override {
    return position < entries.size() ? entries[position++] : nullptr;
  }

 private:
  std::vector<Entry> entries;
  std::size_t position = 0;
};

Entry entryBelow(Entry above, std::string kind, std::string title) {
  auto entry = std::make_shared<LinuxRegistryEntry>();
  entry->kind = std::move(kind);
  entry->title = std::move(title);
  entry->above = std::move(above);
  return entry;
}

/// "card0-HDMI-A-1" with number 93 gives "disp-card0-00093-HDMI-A-1".
std::string portName(const Connector& connector) {
  std::string number = std::to_string(connector.number);
  number.insert(0, number.size() < 5 ? 5 - number.size() : 0, '0');
  const std::size_t dash = connector.name.find('-');
  return "disp-" + connector.name.substr(0, dash) + "-" + number + connector.name.substr(dash);
}

PropertyValue displayAttributes(const PanelIdentity& panel) {
  PropertyValue::Dictionary product{
      {"LegacyManufacturerID", PropertyValue{std::int64_t{panel.vendor}}},
      {"ProductID", PropertyValue{std::int64_t{panel.model}}}};
  if (panel.serial != 0) product["SerialNumber"] = PropertyValue{std::int64_t{panel.serial}};
  return PropertyValue{
      PropertyValue::Dictionary{{"ProductAttributes", PropertyValue{std::move(product)}}}};
}

std::optional<EDID> edidOf(const Connector& connector) {
  return parseEDID({reinterpret_cast<const std::uint8_t*>(connector.edid.data()),  // chars as bytes
                    connector.edid.size()});
}

void addConnector(std::vector<Entry>& entries, const Entry& root, const Connector& connector) {
  const Entry controller = entryBelow(root, "DRMConnector", portName(connector));
  entries.push_back(controller);
  if (const auto edid = edidOf(connector)) {
    entries.push_back(entryBelow(controller, "DRMPanel", "panel"));
    entries.back()->properties["DisplayAttributes"] = displayAttributes(edid->panel);
  }
  if (connector.bus) {
    entries.push_back(entryBelow(controller, "DCPAVServiceProxy", "i2c"));
    entries.back()->properties["Location"] =
        PropertyValue{std::string(connector.isInternal() ? "Embedded" : "External")};
    entries.back()->channel = I2CChannel{connector.name, *connector.bus};
  }
}

}  // namespace

std::optional<PropertyValue> LinuxRegistryEntry::property(std::string_view key) const {
  const auto found = properties.find(key);
  if (found == properties.end()) return std::nullopt;
  return found->second;
}

std::unique_ptr<RegistryIterator> LinuxIORegistry::allServices() {
  std::vector<Entry> entries{entryBelow(nullptr, "Root", "Root")};
  const Entry root = entries.front();
  for (const Connector& connector : connectors.connected()) addConnector(entries, root, connector);
  return std::make_unique<Pass>(std::move(entries));
}

}  // namespace brivane
