#include "Machines/Linux/HIDUtil/UserKeyMapping.h"

#include <nlohmann/json.hpp>

namespace brivane {
namespace {

constexpr const char* mappingKey = "UserKeyMapping";
constexpr const char* sourceKey = "HIDKeyboardModifierMappingSrc";
constexpr const char* destinationKey = "HIDKeyboardModifierMappingDst";

std::optional<std::uint64_t> usage(const nlohmann::json& entry, const char* key) {
  if (!entry.is_object()) return std::nullopt;
  const auto found = entry.find(key);
  if (found == entry.end() || !found->is_number_unsigned()) return std::nullopt;
  return found->get<std::uint64_t>();
}

}  // namespace

std::optional<UserKeyMapping> parseKeyMapping(const std::string& json) {
  const auto document = nlohmann::json::parse(json, nullptr, false);
  if (!document.is_object() || !document.contains(mappingKey)) return std::nullopt;
  const auto& list = document[mappingKey];
  if (!list.is_array()) return std::nullopt;
  UserKeyMapping mapping;
  for (const auto& entry : list) {
    const auto source = usage(entry, sourceKey);
    const auto destination = usage(entry, destinationKey);
    if (!source || !destination) return std::nullopt;
    mapping.push_back({*source, *destination});
  }
  return mapping;
}

std::string keyMappingJson(const UserKeyMapping& mapping) {
  auto list = nlohmann::json::array();
  for (const KeyMappingEntry& entry : mapping) {
    list.push_back({{sourceKey, entry.source}, {destinationKey, entry.destination}});
  }
  return nlohmann::json{{mappingKey, list}}.dump();
}

std::string keyMappingListing(const UserKeyMapping& mapping) {
  if (mapping.empty()) return "(null)\n";
  std::string text = "(\n";
  for (const KeyMappingEntry& entry : mapping) {
    text += "        {\n        " + std::string(destinationKey) + " = " +
            std::to_string(entry.destination) + ";\n        " + sourceKey + " = " +
            std::to_string(entry.source) + ";\n    }";
    text += &entry == &mapping.back() ? "\n" : ",\n";
  }
  return text + ")\n";
}

}  // namespace brivane
