#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brivane {

/// One word of a scenario's line.
struct Token {
  /// Without its quotation marks, escapes replaced.
  std::string text;
  bool isQuoted = false;
  /// Where it begins in the line.
  std::size_t position = 0;
};

/// The line's words, or what is wrong with it. Words are separated by blanks; `"…"` is one word, in
/// which `\"` and `\\` stand for the quotation mark and the backslash; so is everything between an
/// opening brace or bracket and the one that closes it. `#` at the start of a word begins a
/// comment, but for a word such as `#2` that isn't the line's first.
std::variant<std::vector<Token>, std::string> splitLine(std::string_view line);

/// A length of time such as "1.5s", "250ms" or "1h30min", exact to the microsecond; nothing for
/// other texts and for times beyond a hundred thousand hours. Units: h, min, s, ms, us.
std::optional<long long> parseMicroseconds(std::string_view text);

}  // namespace brivane
