#include "Machines/Common/Files/PropertyJson.h"

#include <limits>
#include <nlohmann/json.hpp>

#include "Machines/Common/Files/TaggedProperty.h"

namespace brivane {
namespace {

// Settings are flat; the limit protects the stack.
constexpr int maximumDepth = 32;

PropertyValue propertyFromJson(const nlohmann::json& json);
PropertyValue::Dictionary dictionaryFrom(const nlohmann::json& object);
nlohmann::json jsonFromProperty(const PropertyValue& value);
nlohmann::json jsonFromDictionary(const PropertyValue::Dictionary& dictionary);

PropertyValue fromNumber(const nlohmann::json& json) {
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (json.is_number_float()) return {json.get<double>()};
  if (json.is_number_unsigned() && json.get<std::uint64_t>() > largest) {
    return {json.get<double>()};
  }
  return {json.get<std::int64_t>()};
}

PropertyValue fromArray(const nlohmann::json& json) {
  PropertyValue::Array array;
  for (const auto& element : json) array.push_back(propertyFromJson(element));
  return {array};
}

struct JsonMaker {
  nlohmann::json operator()(PropertyValue::Unsupported) const { return nullptr; }
  nlohmann::json operator()(const PropertyValue::Array& array) const {
    auto json = nlohmann::json::array();
    for (const auto& element : array) json.push_back(jsonFromProperty(element));
    return json;
  }
  nlohmann::json operator()(const PropertyValue::Dictionary& dictionary) const {
    return jsonFromDictionary(tagged(dictionary));
  }
  nlohmann::json operator()(const PropertyValue::Date& date) const {
    return jsonFromDictionary(tagged(date));
  }
  nlohmann::json operator()(const PropertyValue::Data& data) const {
    return jsonFromDictionary(tagged(data));
  }
  template <typename Scalar>
  nlohmann::json operator()(const Scalar& scalar) const {
    return scalar;
  }
};

PropertyValue propertyFromJson(const nlohmann::json& json) {
  if (json.is_boolean()) return {json.get<bool>()};
  if (json.is_number()) return fromNumber(json);
  if (json.is_string()) return {json.get<std::string>()};
  if (json.is_array()) return fromArray(json);
  if (json.is_object()) return untagged(dictionaryFrom(json));
  return {};
}

nlohmann::json jsonFromProperty(const PropertyValue& value) {
  return std::visit(JsonMaker{}, value.content);
}

PropertyValue::Dictionary dictionaryFrom(const nlohmann::json& object) {
  PropertyValue::Dictionary dictionary;
  for (const auto& [key, value] : object.items()) dictionary[key] = propertyFromJson(value);
  return dictionary;
}

nlohmann::json jsonFromDictionary(const PropertyValue::Dictionary& dictionary) {
  auto json = nlohmann::json::object();
  for (const auto& [key, value] : dictionary) json[key] = jsonFromProperty(value);
  return json;
}

std::string written(const nlohmann::json& json, int indentation) {
  return json.dump(indentation, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

std::string jsonOfProperty(const PropertyValue& value) {
  return written(jsonFromProperty(value), -1);
}

std::string jsonOfDictionary(const PropertyValue::Dictionary& dictionary) {
  return written(jsonFromDictionary(dictionary), 2);
}

std::variant<PropertyValue::Dictionary, JsonProblem> dictionaryFromJson(std::string_view text) {
  try {
    bool isTooDeep = false;
    const auto json = nlohmann::json::parse(text, [&](int depth, auto, auto&) {
      isTooDeep = isTooDeep || depth > maximumDepth;
      return !isTooDeep;
    });
    if (isTooDeep) return JsonProblem{"its values are nested too deeply"};
    if (!json.is_object()) {
      return JsonProblem{std::string("it holds a JSON ") + json.type_name() + ", not an object"};
    }
    return dictionaryFrom(json);
  } catch (const nlohmann::json::parse_error& error) {
    return JsonProblem{"it is no valid JSON at byte " + std::to_string(error.byte)};
  } catch (const nlohmann::json::out_of_range&) {
    return JsonProblem{"it holds a number that is too large"};
  }
}

}  // namespace brivane
