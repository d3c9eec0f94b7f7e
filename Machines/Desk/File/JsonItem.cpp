#include "Machines/Desk/File/JsonItem.h"

#include <algorithm>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Desk/File/JsonProperty.h"
#include "Machines/Desk/File/JsonSection.h"
#include "Machines/Desk/File/Suggestion.h"

// Desk files are written by hand, so an error gives the place, what was expected, what was found,
// and for a misspelt word the nearest valid one.

namespace brivane {
namespace {

bool isControlCharacter(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

}  // namespace

void note(JsonError& error, const std::string& path, const std::string& what) {
  if (!error) error = (path.empty() ? "/" : path) + ": " + what;
}

void JsonItem::complain(const std::string& what) const {
  note(error, path, what);
}

void JsonItem::reject(std::string_view expected) const {
  complain("expected " + std::string(expected) + ", found " + jsonExcerpt(value));
}

void JsonItem::to(bool& target) const {
  if (error) return;
  const auto* boolean = std::get_if<bool>(&value.content);
  if (boolean == nullptr) return reject("true or false");
  target = *boolean;
}

void JsonItem::to(std::string& target) const {
  if (error) return;
  const auto* string = std::get_if<std::string>(&value.content);
  if (string == nullptr) return reject("text");
  if (std::ranges::any_of(*string, isControlCharacter)) {
    return reject("text without control characters");
  }
  target = *string;
}

void JsonItem::to(double& target, double lowest, double highest) const {
  if (error) return;
  std::optional<double> number;
  if (const auto* whole = std::get_if<std::int64_t>(&value.content)) {
    number = static_cast<double>(*whole);
  } else if (const auto* fraction = std::get_if<double>(&value.content)) {
    number = *fraction;
  }
  if (!number || *number < lowest || *number > highest) {
    return reject("a number from " + shortestDecimal(lowest) + " to " + shortestDecimal(highest));
  }
  target = *number;
}

void JsonItem::to(std::uint64_t& target) const {
  if (error) return;
  if (const auto* large = std::get_if<std::uint64_t>(&value.content)) {
    target = *large;
    return;
  }
  const auto* number = std::get_if<std::int64_t>(&value.content);
  if (number == nullptr || *number < 0) {
    return reject("a whole number from 0 to 18446744073709551615");
  }
  target = static_cast<std::uint64_t>(*number);
}

void JsonItem::to(PropertyValue& target) const {
  if (error) return;
  auto property = propertyFromJsonValue(value);
  if (!property) return reject("a value without null, numbers beyond 63 bits or unknown \"$…\"");
  target = std::move(*property);
}

std::optional<std::size_t> JsonItem::choose(const std::vector<std::string_view>& words) const {
  if (error) return std::nullopt;
  const auto* word = std::get_if<std::string>(&value.content);
  const auto chosen = word == nullptr ? words.end() : std::ranges::find(words, *word);
  if (chosen != words.end()) return static_cast<std::size_t>(chosen - words.begin());
  std::string expected;
  for (const auto choice : words) {
    if (!expected.empty()) expected += choice == words.back() ? " or " : ", ";
    expected += jsonExcerpt({std::string(choice)});
  }
  complain("expected " + expected + ", found " + jsonExcerpt(value) +
           (word == nullptr ? "" : suggestion(*word, words)));
  return std::nullopt;
}

std::vector<JsonItem> JsonItem::elements(std::size_t fewest, std::size_t most) const {
  std::vector<JsonItem> items;
  const auto* array = std::get_if<JsonValue::Array>(&value.content);
  if (array == nullptr) {
    reject("a list");
  } else if (array->size() < fewest || array->size() > most) {
    complain("expected a list of " + std::to_string(fewest) +
             (fewest == most ? "" : " to " + std::to_string(most)) + ", found " +
             std::to_string(array->size()));
  } else {
    for (const auto& element : *array) {
      items.emplace_back(element, path + "/" + std::to_string(items.size()), error);
    }
  }
  return items;
}

JsonSection JsonItem::section() const {
  static const JsonValue::Object nothing;
  const auto* object = std::get_if<JsonValue::Object>(&value.content);
  if (object == nullptr) reject("an object");
  return {object == nullptr ? nothing : *object, path, error};
}

}  // namespace brivane
