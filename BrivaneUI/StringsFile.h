#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace brivane {

/// Localised texts by key.
using StringTable = std::map<std::string, std::string, std::less<>>;

/// One sentence without a line end, beginning with "line <number>: ".
struct StringsFileError {
  std::string sentence;
};

/// Parses a ".strings" file: UTF-8, pairs of `"key" = "value";`, and comments of both forms of C.
/// Within quotes a backslash begins an escape: \" \\ \' \n \r \t \a \b \f \v, and \U with four
/// hexadecimal digits for a UTF-16 unit (a surrogate pair takes two). Each key may occur once.
std::variant<StringTable, StringsFileError> parseStringsFile(std::string_view bytes);

}  // namespace brivane
