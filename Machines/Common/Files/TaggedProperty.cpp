#include "Machines/Common/Files/TaggedProperty.h"

#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

constexpr std::string_view dateTag = "$date";
constexpr std::string_view dataTag = "$data";

std::optional<std::vector<std::uint8_t>> bytesFrom(std::string_view text) {
  if (text.size() % 2 != 0 ||
      text.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos) {
    return std::nullopt;
  }
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    std::uint8_t byte = 0;
    std::from_chars(text.data() + i, text.data() + i + 2, byte, 16);
    bytes.push_back(byte);
  }
  return bytes;
}

std::optional<double> numberIn(const PropertyValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value.content)) {
    return static_cast<double>(*integer);
  }
  if (const auto* fraction = std::get_if<double>(&value.content)) return *fraction;
  return std::nullopt;
}

std::optional<PropertyValue> valueOf(std::string_view tag, const PropertyValue& value) {
  if (tag == dateTag) {
    if (const auto seconds = numberIn(value)) return PropertyValue{PropertyValue::Date{*seconds}};
  }
  if (tag == dataTag && value.text() != nullptr) {
    if (auto bytes = bytesFrom(*value.text())) {
      return PropertyValue{PropertyValue::Data{std::move(*bytes)}};
    }
  }
  return std::nullopt;
}

bool looksTagged(const PropertyValue::Dictionary& dictionary, std::string_view start) {
  return dictionary.size() == 1 && dictionary.begin()->first.starts_with(start);
}

PropertyValue::Dictionary renamed(PropertyValue::Dictionary dictionary, const std::string& key) {
  auto only = dictionary.extract(dictionary.begin());
  only.key() = key;
  dictionary.insert(std::move(only));
  return dictionary;
}

}  // namespace

PropertyValue::Dictionary tagged(PropertyValue::Date date) {
  return {{std::string(dateTag), {date.seconds}}};
}

PropertyValue::Dictionary tagged(const PropertyValue::Data& data) {
  std::string text;
  for (const std::uint8_t byte : data.bytes) text += hexadecimal(byte, 2);
  return {{std::string(dataTag), {std::move(text)}}};
}

PropertyValue::Dictionary tagged(PropertyValue::Dictionary dictionary) {
  if (!looksTagged(dictionary, "$")) return dictionary;
  const std::string key = "$" + dictionary.begin()->first;
  return renamed(std::move(dictionary), key);
}

PropertyValue untagged(PropertyValue::Dictionary dictionary) {
  if (!looksTagged(dictionary, "$")) return {std::move(dictionary)};
  const auto& [tag, content] = *dictionary.begin();
  if (auto value = valueOf(tag, content)) return std::move(*value);
  if (!looksTagged(dictionary, "$$")) return {std::move(dictionary)};
  const std::string key = tag.substr(1);
  return {renamed(std::move(dictionary), key)};
}

}  // namespace brivane
