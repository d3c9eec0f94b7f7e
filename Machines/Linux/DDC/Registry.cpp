#include "Machines/Linux/DDC/Registry.h"

#include <cstdint>
#include <utility>

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

/// "card0-HDMI-A-1" of display 65 gives "disp-0000000065-card0-HDMI-A-1".
std::string portName(DisplayID display, const std::string& place) {
  std::string number = std::to_string(display);
  constexpr std::size_t digits = 10;
  number.insert(0, digits - number.size(), '0');
  return "disp-" + number + "-" + place;
}

PropertyValue displayAttributes(const PanelIdentity& panel) {
  PropertyValue::Dictionary product{
      {"LegacyManufacturerID", PropertyValue{std::int64_t{panel.vendor}}},
      {"ProductID", PropertyValue{std::int64_t{panel.model}}}};
  if (panel.serial != 0) product["SerialNumber"] = PropertyValue{std::int64_t{panel.serial}};
  return PropertyValue{
      PropertyValue::Dictionary{{"ProductAttributes", PropertyValue{std::move(product)}}}};
}

/// `connector`: null when it isn't certain.
void addDisplay(std::vector<Entry>& entries, const Entry& root, const DescribedOutput& output,
                const Connector* connector) {
  const std::string& place = connector == nullptr ? output.name : connector->name;
  const Entry controller = entryBelow(root, "DRMConnector", portName(output.display, place));
  entries.push_back(controller);
  entries.push_back(entryBelow(controller, "DRMPanel", "panel"));
  entries.back()->properties["DisplayAttributes"] =
      displayAttributes(identityOf(output, connector));
  if (connector == nullptr || !connector->bus) return;
  entries.push_back(entryBelow(controller, "DCPAVServiceProxy", "i2c"));
  entries.back()->properties["Location"] =
      PropertyValue{std::string(connector->isInternal() ? "Embedded" : "External")};
  entries.back()->channel = I2CChannel{connector->name, *connector->bus};
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
  const DescribedOutputs outputs = describedOutputs();
  auto all = connectors.all();
  busSearch.complete(all);
  const auto known = connectorsOf(outputs, all);
  for (const DescribedOutput& output : outputs.online) {
    const auto found = known.find(output.display);
    const Connector* const connector = found == known.end() ? nullptr : &found->second;
    addDisplay(entries, root, output, connector);
    const bool lacksBus = connector == nullptr || !connector->bus;
    if (lacksBus && !output.isBuiltIn)
      noteMissingBus(connector == nullptr ? output.name : found->second.name);
  }
  return std::make_unique<Pass>(std::move(entries));
}

/// The search may know more of why there is none.
void LinuxIORegistry::noteMissingBus(const std::string& monitor) {
  const auto reason = busSearch.obstacle(monitor);
  troubles.note(monitor, reason.value_or(BusTrouble::noBus));
}

}  // namespace brivane
