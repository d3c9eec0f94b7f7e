#include "Tools/BrivaneDesk/Language/Slots.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Desk/File/FaultCalls.h"
#include "Machines/Desk/File/JsonItem.h"
#include "Machines/Desk/File/JsonParser.h"
#include "Tools/BrivaneDesk/Language/KeyNames.h"

namespace brivane {
namespace {

using Reading = std::optional<Argument>;

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (true) {
    const auto end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

Reading readWhole(std::string_view text, std::int64_t lowest, std::int64_t highest) {
  const auto number = parseInteger(text);
  if (!number || *number < lowest || *number > highest) return std::nullopt;
  return *number;
}

Reading readNumber(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isWhole = error == std::errc() && end == text.data() + text.size();
  if (!isWhole || !std::isfinite(number)) return std::nullopt;
  return number;
}

Reading readDisplay(const Token& token) {
  return readWhole(token.text, 1, 4294967295);
}

Reading readCount(const Token& token) {
  return readWhole(token.text, 0, 1'000'000'000);
}

Reading readLevel(const Token& token) {
  return readWhole(token.text, -100, 200);
}

Reading readPercent(const Token& token) {
  std::string_view text = token.text;
  if (!text.ends_with('%')) return std::nullopt;
  text.remove_suffix(1);
  // A monitor may show more than its maximum: up to 65535 of 1.
  return readWhole(text, 0, 6'553'500);
}

Reading readOrdinal(const Token& token) {
  return token.text.starts_with('#') ? readWhole(std::string_view(token.text).substr(1), 1, 64)
                                     : std::nullopt;
}

Reading readDecimal(const Token& token) {
  return readNumber(token.text);
}

Reading readDuration(const Token& token) {
  const auto microseconds = parseMicroseconds(token.text);
  if (!microseconds) return std::nullopt;
  return Microseconds(*microseconds);
}

Reading readCall(const Token& token) {
  const bool isKnown = std::ranges::count(faultCalls(), std::string_view(token.text)) > 0;
  return isKnown ? Reading(token.text) : std::nullopt;
}

Reading readPoint(const Token& token) {
  const std::string_view text = token.text;
  if (!text.starts_with('{') || !text.ends_with('}')) return std::nullopt;
  const auto parts = split(text.substr(1, text.size() - 2), ',');
  if (parts.size() != 2) return std::nullopt;
  Point point;
  for (std::size_t index = 0; index < 2; ++index) {
    auto part = parts[index];
    while (part.starts_with(' ')) part.remove_prefix(1);
    const auto number = readNumber(part);
    if (!number) return std::nullopt;
    (index == 0 ? point.x : point.y) = std::get<double>(*number);
  }
  return point;
}

Reading readKeys(const Token& token) {
  Keys keys;
  for (const auto name : split(token.text, '+')) {
    if (!isKeyName(name)) return std::nullopt;
    keys.names.emplace_back(name);
  }
  return keys;
}

Reading readText(const Token& token) {
  return token.isQuoted ? Reading(token.text) : std::nullopt;
}

Reading readName(const Token& token) {
  return token.text;
}

Reading readValue(const Token& token) {
  if (token.isQuoted) return PropertyValue{token.text};
  const auto parsed = parseJson(token.text);
  const auto* const json = std::get_if<JsonValue>(&parsed);
  if (json == nullptr) return std::nullopt;
  JsonError error;
  PropertyValue value;
  JsonItem(*json, "", error).to(value);
  return error ? Reading() : Reading(value);
}

struct Kind {
  std::string_view name;
  std::string_view expectation;
  Reading (*read)(const Token&);
};

constexpr auto kinds = std::to_array<Kind>({
    {"DISPLAY", "a display's number", readDisplay},
    {"COUNT", "a whole number from 0 to 1000000000", readCount},
    {"LEVEL", "a level from -100 to 200", readLevel},
    {"PERCENT", "a percentage such as 40%", readPercent},
    {"ORDINAL", "a place such as #2", readOrdinal},
    {"NUMBER", "a number", readDecimal},
    {"DURATION", "a length of time such as 1.5s or 250ms", readDuration},
    {"TIME", "a time such as 1.5s or 2min", readDuration},
    {"POINT", "a point such as {100,200}", readPoint},
    {"KEYS", "keys such as control+option+up", readKeys},
    {"CALL", "a call such as GammaTables.writeTable", readCall},
    {"TEXT", "a text in quotation marks", readText},
    {"NAME", "a name", readName},
    {"VALUE", "a value such as true, 12, 1.5 or \"text\"", readValue},
    {"ARGUMENTS", "arguments", readName},
});

const Kind* kindOf(std::string_view word) {
  const auto* const found = std::ranges::find(kinds, word, &Kind::name);
  return found == kinds.end() ? nullptr : found;
}

}  // namespace

bool Slot::isLiteral() const {
  return kindOf(word) == nullptr && word.find('|') == std::string_view::npos;
}

bool Slot::accepts(const Token& token) const {
  if (const auto* const kind = kindOf(word)) return kind->read(token).has_value();
  return !token.isQuoted && std::ranges::count(choices(), std::string_view(token.text)) > 0;
}

Reading Slot::argument(const Token& token) const {
  if (const auto* const kind = kindOf(word)) return kind->read(token);
  if (isLiteral()) return std::nullopt;
  return token.text;
}

std::vector<std::string> Slot::expectations() const {
  if (const auto* const kind = kindOf(word)) return {std::string(kind->expectation)};
  const auto words = choices();
  return {words.begin(), words.end()};
}

std::vector<std::string_view> Slot::choices() const {
  if (word == "KEYS") return keyNames();
  if (word == "CALL") return faultCalls();
  if (kindOf(word) != nullptr) return {};
  return split(word, '|');
}

}  // namespace brivane
