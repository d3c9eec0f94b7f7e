#include "Tools/BrivaneDesk/Language/Tokens.h"

#include <algorithm>
#include <array>

namespace brivane {
namespace {

constexpr std::string_view blanks = " \t\r";

/// Reads a quoted word from the character after its opening mark; nothing when it isn't closed.
std::optional<std::string> readQuoted(std::string_view line, std::size_t& position) {
  std::string text;
  while (position < line.size()) {
    const char character = line[position++];
    if (character == '"') return text;
    if (character == '\\' && position < line.size()) {
      text += line[position++];
    } else {
      text += character;
    }
  }
  return std::nullopt;
}

/// The end of a word that begins with an opening brace or bracket; nothing when it isn't closed.
std::optional<std::size_t> endOfBraces(std::string_view line, std::size_t position) {
  int depth = 0;
  bool inText = false;
  for (; position < line.size(); ++position) {
    const char character = line[position];
    if (inText) {
      if (character == '\\') ++position;
      if (character == '"') inText = false;
    } else if (character == '"') {
      inText = true;
    } else if (character == '{' || character == '[') {
      ++depth;
    } else if ((character == '}' || character == ']') && --depth == 0) {
      return position + 1;
    }
  }
  return std::nullopt;
}

struct Unit {
  std::string_view name;
  long long microseconds;
};

constexpr auto units = std::to_array<Unit>(
    {{"h", 3'600'000'000}, {"min", 60'000'000}, {"s", 1'000'000}, {"ms", 1'000}, {"us", 1}});

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Takes the digits at the front of `text`.
std::string_view takeDigits(std::string_view& text) {
  const auto* const end = std::ranges::find_if_not(text, isDigit);
  const auto digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  return digits;
}

/// Takes one number with its unit from the front of `text`.
std::optional<long long> takeMicroseconds(std::string_view& text) {
  const std::string_view whole = takeDigits(text);
  std::string_view fraction;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    fraction = takeDigits(text);
    if (fraction.empty()) return std::nullopt;
  }
  const auto* const unitEnd = std::ranges::find_if(text, isDigit);
  const auto name = text.substr(0, static_cast<std::size_t>(unitEnd - text.begin()));
  const auto* const unit = std::ranges::find(units, name, &Unit::name);
  if (whole.empty() || whole.size() > 9 || unit == units.end()) return std::nullopt;
  text.remove_prefix(name.size());
  long long result = std::stoll(std::string(whole)) * unit->microseconds;
  long long place = unit->microseconds;
  for (const char digit : fraction) {
    if (place % 10 != 0 && digit != '0') {
      // A fraction of a unit that is no whole microsecond is refused.
      return std::nullopt;
    }
    place /= 10;
    result += (digit - '0') * place;
  }
  return result;
}

/// "#2" is a word, except at the line's beginning.
bool isComment(std::string_view rest, bool beginsLine) {
  if (!rest.starts_with('#')) return false;
  rest.remove_prefix(1);
  const bool hasNumber = !takeDigits(rest).empty();
  const bool isWord = rest.empty() || blanks.find(rest.front()) != std::string_view::npos;
  return beginsLine || !hasNumber || !isWord;
}

}  // namespace

std::variant<std::vector<Token>, std::string> splitLine(std::string_view line) {
  std::vector<Token> tokens;
  std::size_t position = 0;
  while ((position = line.find_first_not_of(blanks, position)) != std::string_view::npos) {
    const std::size_t start = position;
    if (isComment(line.substr(start), tokens.empty())) break;
    if (line[start] == '"') {
      ++position;
      auto text = readQuoted(line, position);
      if (!text)
        return "the text that begins with " + std::string(line.substr(start)) +
               " has no closing quotation mark";
      tokens.push_back({std::move(*text), true, start});
      continue;
    }
    std::optional<std::size_t> end;
    if (line[start] == '{' || line[start] == '[') {
      end = endOfBraces(line, start);
      if (!end) return "what begins with " + std::string(line.substr(start)) + " isn't closed";
    } else {
      end = std::min(line.find_first_of(blanks, start), line.size());
    }
    tokens.push_back({std::string(line.substr(start, *end - start)), false, start});
    position = *end;
  }
  return tokens;
}

std::optional<long long> parseMicroseconds(std::string_view text) {
  if (text.empty()) return std::nullopt;
  long long total = 0;
  while (!text.empty()) {
    const auto part = takeMicroseconds(text);
    if (!part) return std::nullopt;
    total += *part;
    if (total > 360'000'000'000'000) return std::nullopt;
  }
  return total;
}

}  // namespace brivane
