#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Desk/File/JsonValue.h"

namespace brivane {

/// The first error of a reading: "<path>: <what>", in one line. After it, reads change nothing and
/// note nothing.
using JsonError = std::optional<std::string>;

/// Notes the first error. `path` is "" for the whole text.
void note(JsonError& error, const std::string& path, const std::string& what);

class JsonSection;

/// One value of a JSON text and its path. Each `to` stores the value in `target`, or notes an error
/// when its type or range is wrong. Ranges include their limits.
class JsonItem {
 public:
  JsonItem(const JsonValue& itemValue, std::string itemPath, JsonError& firstError)
      : value(itemValue), path(std::move(itemPath)), error(firstError) {}

  bool isNull() const { return value.isNull(); }
  bool isObject() const { return std::holds_alternative<JsonValue::Object>(value.content); }
  std::uint64_t fingerprint() const { return jsonFingerprint(value); }

  void to(bool& target) const;
  /// Any text without control characters.
  void to(std::string& target) const;
  void to(double& target, double lowest, double highest) const;
  /// Any whole number from 0 to 2^64 - 1.
  void to(std::uint64_t& target) const;
  template <std::integral Whole>
  void to(Whole& target, std::int64_t lowest, std::int64_t highest) const;
  /// One of the given words.
  template <typename Choice>
  void to(Choice& target, const std::vector<std::pair<std::string_view, Choice>>& choices) const;
  /// Anything that a property list can hold.
  void to(PropertyValue& target) const;

  /// The elements of a list with `fewest` to `most` of them; for anything else, an error and an
  /// empty result.
  std::vector<JsonItem> elements(std::size_t fewest, std::size_t most) const;
  /// The members of an object; an error for anything else.
  JsonSection section() const;

  /// Notes "expected <expected>, found <the value>".
  void reject(std::string_view expected) const;
  /// Notes any other complaint about the value.
  void complain(const std::string& what) const;

 private:
  std::optional<std::size_t> choose(const std::vector<std::string_view>& words) const;

  const JsonValue& value;
  std::string path;
  JsonError& error;
};

template <std::integral Whole>
void JsonItem::to(Whole& target, std::int64_t lowest, std::int64_t highest) const {
  if (error) return;
  const auto* number = std::get_if<std::int64_t>(&value.content);
  if (number == nullptr || *number < lowest || *number > highest) {
    return reject("a whole number from " + std::to_string(lowest) + " to " +
                  std::to_string(highest));
  }
  target = static_cast<Whole>(*number);
}

template <typename Choice>
void JsonItem::to(Choice& target,
                  const std::vector<std::pair<std::string_view, Choice>>& choices) const {
  std::vector<std::string_view> words;
  words.reserve(choices.size());
  for (const auto& choice : choices) words.push_back(choice.first);
  if (const auto chosen = choose(words)) target = choices[*chosen].second;
}

}  // namespace brivane
