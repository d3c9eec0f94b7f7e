// The file format of macOS's localised texts. Translators edit such files by hand, so every mistake
// is reported with its line.
#include "BrivaneUI/StringsFile.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include "BrivaneCore/Support/UTF8.h"

namespace brivane {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t unitDigits = 4;

std::optional<char> simpleEscape(char letter) {
  constexpr std::string_view letters = "\"\\'nrtabfv";
  constexpr std::string_view meanings = "\"\\'\n\r\t\a\b\f\v";
  const auto index = letters.find(letter);
  if (index == std::string_view::npos) return std::nullopt;
  return meanings[index];
}

bool isHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendUTF8(std::string& text, std::uint32_t character) {
  const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto appendTail = [&](unsigned shift) { append(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) return append(character);
  if (character < 0x800) {
    append(0xC0 | (character >> 6));
  } else if (character < 0x10000) {
    append(0xE0 | (character >> 12));
    appendTail(6);
  } else {
    append(0xF0 | (character >> 18));
    appendTail(12);
    appendTail(6);
  }
  appendTail(0);
}

class Parser {
 public:
  explicit Parser(std::string_view fileBytes) : bytes(fileBytes) {}

  std::variant<StringTable, StringsFileError> parse() {
    while (skipBlanks() && position < bytes.size() && readPair()) {
    }
    if (error) return *std::move(error);
    return std::move(table);
  }

 private:
  bool fail(const std::string& what) {
    const auto line = std::count(bytes.begin(), bytes.begin() + offset(position), '\n') + 1;
    error = StringsFileError{"line " + std::to_string(line) + ": " + what};
    return false;
  }

  static std::ptrdiff_t offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

  std::string_view rest() const { return bytes.substr(position); }

  bool skipBlanks() {
    while (position < bytes.size()) {
      if (std::string_view(" \t\r\n").find(bytes[position]) != std::string_view::npos) {
        ++position;
      } else if (rest().starts_with("//")) {
        position = std::min(bytes.find('\n', position), bytes.size());
      } else if (rest().starts_with("/*")) {
        const auto end = bytes.find("*/", position + 2);
        if (end == std::string_view::npos) return fail("the comment has no end");
        position = end + 2;
      } else {
        break;
      }
    }
    return true;
  }

  bool readPair() {
    std::string key;
    std::string value;
    if (!readQuoted("a key", key)) return false;
    if (table.contains(key)) return fail("the key stands in the file twice");
    if (!skipBlanks() || !expect('=', "after the key") || !skipBlanks()) return false;
    if (!readQuoted("a text", value)) return false;
    if (!skipBlanks() || !expect(';', "after the text")) return false;
    table.emplace(std::move(key), std::move(value));
    return true;
  }

  bool expect(char character, const std::string& where) {
    if (!rest().starts_with(character)) {
      return fail(std::string("expected \"") + character + "\" " + where);
    }
    ++position;
    return true;
  }

  bool readQuoted(const std::string& what, std::string& text) {
    if (!rest().starts_with('"')) return fail("expected " + what + " in double quotes");
    const std::size_t start = position++;
    while (position < bytes.size()) {
      const char byte = bytes[position++];
      if (byte == '"') return true;
      if (byte != '\\') {
        text += byte;
      } else if (!readEscape(text)) {
        return false;
      }
    }
    position = start;
    return fail("the text has no closing quote");
  }

  bool readEscape(std::string& text) {
    const char letter = position < bytes.size() ? bytes[position] : '\0';
    if (letter == 'U') return readCharacterNumber(text);
    const auto meaning = simpleEscape(letter);
    if (!meaning) return fail("a backslash begins no known escape");
    ++position;
    text += *meaning;
    return true;
  }

  /// Reads the escape from its "U" on.
  bool readCharacterNumber(std::string& text) {
    const auto unit = readUnit();
    if (!unit) return fail("\\U needs four hexadecimal digits");
    if (!isHighSurrogate(*unit) && !isLowSurrogate(*unit)) {
      appendUTF8(text, *unit);
      return true;
    }
    std::optional<std::uint32_t> second;
    if (isHighSurrogate(*unit) && rest().starts_with("\\U")) {
      ++position;
      second = readUnit();
    }
    if (!second || !isLowSurrogate(*second)) return fail("\\U gives half of a character");
    appendUTF8(text, 0x10000 + ((*unit - 0xD800) << 10) + (*second - 0xDC00));
    return true;
  }

  std::optional<std::uint32_t> readUnit() {
    const auto digits = rest().substr(1, unitDigits);
    std::uint32_t unit = 0;
    const auto* const end = digits.data() + digits.size();
    if (digits.size() < unitDigits || std::from_chars(digits.data(), end, unit, 16).ptr != end) {
      return std::nullopt;
    }
    position += 1 + unitDigits;
    return unit;
  }

  const std::string_view bytes;
  std::size_t position = 0;
  StringTable table;
  std::optional<StringsFileError> error;
};

}  // namespace

std::variant<StringTable, StringsFileError> parseStringsFile(std::string_view bytes) {
  if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
  if (!isValidUTF8(bytes)) return StringsFileError{"line 1: the file is not UTF-8"};
  return Parser(bytes).parse();
}

}  // namespace brivane
