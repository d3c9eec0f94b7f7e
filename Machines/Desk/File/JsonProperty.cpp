#include "Machines/Desk/File/JsonProperty.h"

#include "Machines/Common/Files/TaggedProperty.h"

namespace brivane {
namespace {

PropertyValue::Array propertyArray(const JsonValue::Array& elements, bool& isComplete) {
  PropertyValue::Array result;
  for (const auto& element : elements) {
    auto property = propertyFromJsonValue(element);
    isComplete = isComplete && property.has_value();
    if (property) result.push_back(std::move(*property));
  }
  return result;
}

PropertyValue::Dictionary propertyDictionary(const JsonValue::Object& members, bool& isComplete) {
  PropertyValue::Dictionary result;
  for (const auto& [key, member] : members) {
    auto property = propertyFromJsonValue(member);
    isComplete = isComplete && property.has_value();
    if (property) result.emplace(key, std::move(*property));
  }
  return result;
}

struct PropertyMaker {
  bool& isComplete;

  PropertyValue operator()(bool value) const { return {value}; }
  PropertyValue operator()(std::int64_t value) const { return {value}; }
  PropertyValue operator()(double value) const { return {value}; }
  PropertyValue operator()(const std::string& value) const { return {value}; }
  PropertyValue operator()(const JsonValue::Array& value) const {
    return {propertyArray(value, isComplete)};
  }
  PropertyValue operator()(const JsonValue::Object& value) const {
    auto property = untagged(propertyDictionary(value, isComplete));
    const bool isTag = value.size() == 1 && value.front().key.starts_with('$') &&
                       !value.front().key.starts_with("$$");
    return isTag && property.dictionary() != nullptr ? refused() : property;
  }
  PropertyValue operator()(std::nullptr_t) const { return refused(); }
  PropertyValue operator()(std::uint64_t) const { return refused(); }

  PropertyValue refused() const {
    isComplete = false;
    return {};
  }
};

}  // namespace

std::optional<PropertyValue> propertyFromJsonValue(const JsonValue& value) {
  bool isComplete = true;
  auto property = std::visit(PropertyMaker{isComplete}, value.content);
  if (!isComplete) return std::nullopt;
  return property;
}

}  // namespace brivane
