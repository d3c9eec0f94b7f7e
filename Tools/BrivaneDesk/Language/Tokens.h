#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brivane {

/// A word of a scenario's line.
struct Token {
  /// Without its quotation marks, escapes replaced.
  std::string text;
  bool isQuoted = false;
  /// Its offset in the line.
  std::size_t position = 0;
};

/// The line's words, or the error. Words are separated by blanks; `"…"` is one word, in which `\"`
/// and `\\` stand for the quotation mark and the backslash; so is text in braces or brackets. `#`
/// at the start of a word begins a comment, except for a word such as `#2` that isn't the line's
/// first.
std::variant<std::vector<Token>, std::string> splitLine(std::string_view line);

/// A duration such as "1.5s", "250ms" or "1h30min", exact to the microsecond; nothing for other
/// texts and for more than a hundred thousand hours. Units: h, min, s, ms, us.
std::optional<long long> parseMicroseconds(std::string_view text);

}  // namespace brivane
