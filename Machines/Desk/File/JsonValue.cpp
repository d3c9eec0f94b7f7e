#include "Machines/Desk/File/JsonValue.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

void writeCharacter(char character, std::string& out) {
  const auto byte = static_cast<unsigned char>(character);
  if (byte < 0x20 || byte == 0x7F) {
    out += "\\u" + hexadecimal(byte, 4);
  } else {
    out += character;
  }
}

void writeString(std::string_view string, std::string& out) {
  out += '"';
  for (const char character : string) {
    if (character == '"' || character == '\\') out += '\\';
    writeCharacter(character, out);
  }
  out += '"';
}

void writeFraction(double number, std::string& out) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  const std::string_view shortest(digits.data(), end.ptr);
  out += shortest;
  if (shortest.find_first_of(".e") == std::string_view::npos) out += ".0";
}

void write(const JsonValue& value, bool sortsMembers, std::string& out);

void writeArray(const JsonValue::Array& array, bool sortsMembers, std::string& out) {
  out += '[';
  for (const auto& element : array) {
    if (out.back() != '[') out += ',';
    write(element, sortsMembers, out);
  }
  out += ']';
}

void writeObject(const JsonValue::Object& object, bool sortsMembers, std::string& out) {
  std::vector<const JsonMember*> members;
  members.reserve(object.size());
  for (const auto& member : object) members.push_back(&member);
  if (sortsMembers) std::ranges::sort(members, {}, &JsonMember::key);
  out += '{';
  for (const auto* member : members) {
    if (out.back() != '{') out += ',';
    writeString(member->key, out);
    out += ':';
    write(member->value, sortsMembers, out);
  }
  out += '}';
}

struct Writer {
  bool sortsMembers;
  std::string& out;

  void operator()(std::nullptr_t) const { out += "null"; }
  void operator()(bool value) const { out += value ? "true" : "false"; }
  void operator()(std::int64_t value) const { out += std::to_string(value); }
  void operator()(std::uint64_t value) const { out += std::to_string(value); }
  void operator()(double value) const { writeFraction(value, out); }
  void operator()(const std::string& value) const { writeString(value, out); }
  void operator()(const JsonValue::Array& value) const { writeArray(value, sortsMembers, out); }
  void operator()(const JsonValue::Object& value) const { writeObject(value, sortsMembers, out); }
};

void write(const JsonValue& value, bool sortsMembers, std::string& out) {
  std::visit(Writer{sortsMembers, out}, value.content);
}

}  // namespace

std::string visibleText(std::string_view text) {
  std::string visible;
  for (const char character : text) writeCharacter(character, visible);
  return visible;
}

std::string childPath(const std::string& parent, std::string_view key) {
  return parent + "/" + visibleText(key);
}

std::string jsonText(const JsonValue& value) {
  std::string out;
  write(value, false, out);
  return out;
}

std::string jsonExcerpt(const JsonValue& value) {
  constexpr std::size_t longestExcerpt = 40;
  if (std::holds_alternative<JsonValue::Array>(value.content)) return "a list";
  if (std::holds_alternative<JsonValue::Object>(value.content)) return "an object";
  std::string text = jsonText(value);
  if (text.size() <= longestExcerpt) return text;
  std::size_t end = longestExcerpt;
  while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;  // not inside a character
  return text.substr(0, end) + "…";
}

std::uint64_t jsonFingerprint(const JsonValue& value) {
  std::string text;
  write(value, true, text);
  std::uint64_t hash = 0xcbf29ce484222325U;  // FNV-1a
  for (const char character : text) {
    hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
  }
  return hash == 0 ? 1 : hash;
}

}  // namespace brivane
