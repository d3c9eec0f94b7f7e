// The registry knows a monitor twice: as a panel with its identity, somewhere below its display
// controller, and as a service proxy with an I2C channel, beside a node that is named after the
// same controller. The controller's name ties the two together. Any entry may lack any property or
// hold one of another kind; such an entry is simply not what is looked for.

#include "BrivaneCore/DDC/IORegistryScanning.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace brivane {
namespace {

constexpr std::string_view portPrefix = "disp";
constexpr int longestClimb = 8;

std::optional<std::uint32_t> number(const PropertyValue::Dictionary& dictionary,
                                    std::string_view key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? std::nullopt : found->second.number32();
}

const PropertyValue::Dictionary* productAttributes(const PropertyValue& displayAttributes) {
  const auto* attributes = displayAttributes.dictionary();
  if (attributes == nullptr) return nullptr;
  const auto product = attributes->find(std::string_view("ProductAttributes"));
  return product == attributes->end() ? nullptr : product->second.dictionary();
}

bool isExternal(const RegistryEntry& entry) {
  const auto location = entry.property("Location");
  return location && location->text() != nullptr && *location->text() == "External";
}

std::string_view firstPiece(std::string_view name) {
  name.remove_prefix(std::min(name.find_first_not_of(':'), name.size()));
  return name.substr(0, name.find(':'));
}

}  // namespace

std::optional<IORegistryScanning::PanelNode> IORegistryScanning::panelNode(
    const RegistryEntry& entry) {
  const auto displayAttributes = entry.property("DisplayAttributes");
  if (!displayAttributes) return std::nullopt;
  const auto* product = productAttributes(*displayAttributes);
  if (product == nullptr) return std::nullopt;
  const auto vendor = number(*product, "LegacyManufacturerID");
  const auto model = number(*product, "ProductID");
  if (!vendor || !model) return std::nullopt;
  const auto port = portOfDisplayNode(entry);
  if (!port) return std::nullopt;
  return PanelNode{{*vendor, *model, number(*product, "SerialNumber").value_or(0)}, *port};
}

std::optional<std::string> IORegistryScanning::externalAVProxyPort(const RegistryEntry& entry) {
  if (entry.className() != "DCPAVServiceProxy" || !isExternal(entry)) return std::nullopt;
  return portOfAVProxy(entry);
}

std::optional<std::string> IORegistryScanning::portOfDisplayNode(const RegistryEntry& entry) {
  std::shared_ptr<const RegistryEntry> above = entry.parent();
  for (int climbed = 1; above != nullptr && climbed <= longestClimb; ++climbed) {
    const auto name = above->name();
    if (name && name->starts_with(portPrefix)) return name;
    above = above->parent();
  }
  return std::nullopt;
}

std::optional<std::string> IORegistryScanning::portOfAVProxy(const RegistryEntry& entry) {
  const auto parent = entry.parent();
  if (parent == nullptr) return std::nullopt;
  const auto name = parent->name();
  if (!name) return std::nullopt;
  const std::string_view port = firstPiece(*name);
  if (!port.starts_with(portPrefix)) return std::nullopt;
  return std::string(port);
}

}  // namespace brivane
