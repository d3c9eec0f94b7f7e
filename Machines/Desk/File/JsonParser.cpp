#include "Machines/Desk/File/JsonParser.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <vector>

// The library's own tree silently keeps the last of two equal keys, which would hide a mistake in a
// desk file; so we build our own tree from its parser events. The depth limit protects the
// recursive walks over that tree (its destructor, too) from a stack overflow.

namespace brivane {
namespace {

constexpr std::size_t deepestNesting = 32;

class TreeBuilder : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit TreeBuilder(std::string_view wholeText) : text(wholeText) {}

  bool null() override { return add(JsonValue{nullptr}); }
  bool boolean(bool value) override { return add(JsonValue{value}); }
  bool number_integer(std::int64_t value) override { return add(JsonValue{value}); }
  bool number_unsigned(std::uint64_t value) override {
    if (value > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) {
      return add(JsonValue{value});
    }
    return add(JsonValue{static_cast<std::int64_t>(value)});
  }
  bool number_float(double value, const std::string&) override { return add(JsonValue{value}); }
  bool string(std::string& value) override { return add(JsonValue{std::move(value)}); }
  bool binary(nlohmann::json::binary_t&) override { return false; }
  bool key(std::string& value) override {
    nextKey = std::move(value);
    return true;
  }
  bool start_object(std::size_t) override { return open(JsonValue{JsonValue::Object{}}); }
  bool start_array(std::size_t) override { return open(JsonValue{JsonValue::Array{}}); }
  bool end_object() override;
  bool end_array() override {
    openContainers.pop_back();
    return true;
  }
  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& exception) override;

  JsonValue root;
  std::string error;

 private:
  bool add(JsonValue value);
  bool open(JsonValue container);
  std::string path() const;

  std::string_view text;
  std::vector<JsonValue*> openContainers;
  std::string nextKey;
};

JsonValue& append(JsonValue& container, std::string key, JsonValue value) {
  if (auto* array = std::get_if<JsonValue::Array>(&container.content)) {
    return array->emplace_back(std::move(value));
  }
  auto& object = std::get<JsonValue::Object>(container.content);
  return object.emplace_back(JsonMember{std::move(key), std::move(value)}).value;
}

bool TreeBuilder::add(JsonValue value) {
  if (openContainers.empty()) {
    root = std::move(value);
  } else {
    append(*openContainers.back(), std::move(nextKey), std::move(value));
  }
  return true;
}

bool TreeBuilder::open(JsonValue container) {
  if (openContainers.size() == deepestNesting) {
    error = path() + ": nested more than " + std::to_string(deepestNesting) + " levels deep";
    return false;
  }
  if (openContainers.empty()) {
    root = std::move(container);
    openContainers.push_back(&root);
  } else {
    auto& added = append(*openContainers.back(), std::move(nextKey), std::move(container));
    openContainers.push_back(&added);
  }
  return true;
}

/// The path of the innermost open container.
std::string TreeBuilder::path() const {
  std::string result;
  for (std::size_t level = 0; level + 1 < openContainers.size(); ++level) {
    const auto& content = openContainers[level]->content;
    if (const auto* array = std::get_if<JsonValue::Array>(&content)) {
      result += "/" + std::to_string(array->size() - 1);
    } else {
      result = childPath(result, std::get<JsonValue::Object>(content).back().key);
    }
  }
  return result.empty() ? "/" : result;
}

bool TreeBuilder::end_object() {
  const auto& object = std::get<JsonValue::Object>(openContainers.back()->content);
  std::vector<std::string_view> keys;
  keys.reserve(object.size());
  for (const auto& member : object) keys.push_back(member.key);
  std::ranges::sort(keys);
  if (const auto twice = std::ranges::adjacent_find(keys); twice != keys.end()) {
    error = path() + ": the key " + jsonExcerpt({std::string(*twice)}) + " appears twice";
    return false;
  }
  openContainers.pop_back();
  return true;
}

/// The library's message without its prefix and position, and without the quoted text, which may be
/// long or no UTF-8.
std::string_view reason(std::string_view message) {
  if (message.find("ill-formed UTF-8") != std::string_view::npos) return "this is not UTF-8 text";
  message = message.substr(0, message.find("; last read"));
  for (const std::string_view mark : {"unexpected ", "invalid ", "number overflow"}) {
    if (const auto start = message.find(mark); start != std::string_view::npos) {
      return message.substr(start);
    }
  }
  return "not JSON";
}

std::string placeInText(std::string_view text, std::size_t offset) {
  const auto before = text.substr(0, offset);
  const auto lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  return "line " + std::to_string(1 + std::ranges::count(before, '\n')) + ", column " +
         std::to_string(before.size() - lineStart + 1) + ": ";
}

bool TreeBuilder::parse_error(std::size_t position, const std::string&,
                              const nlohmann::detail::exception& exception) {
  // The position counts the characters read, including the offending one.
  const auto offset = std::min(std::max<std::size_t>(position, 1) - 1, text.size());
  error = placeInText(text, offset) + std::string(reason(exception.what()));
  return false;
}

}  // namespace

std::variant<JsonValue, std::string> parseJson(std::string_view text) {
  // The library treats a zero byte as the end of the text.
  if (const auto zero = text.find('\0'); zero != std::string_view::npos) {
    return placeInText(text, zero) + "a zero byte";
  }
  TreeBuilder builder(text);
  if (nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) return std::move(builder.root);
  return std::move(builder.error);
}

}  // namespace brivane
