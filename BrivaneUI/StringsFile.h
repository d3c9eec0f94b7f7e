#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace brivane {

/// Localised texts by key.
using StringTable = std::map<std::string, std::string, std::less<>>;

/// One sentence without a line end that begins with "line <number>: ".
struct StringsFileError {
  std::string sentence;
};

/// Reads the text of a ".strings" file: UTF-8, pairs of `"key" = "value";` with comments of both
/// forms of C between them. Within quotes a backslash begins an escape: \" \\ \' \n \r \t \a \b \f
/// \v, and \U with four hexadecimal digits for a UTF-16 unit (two of them for characters beyond the
/// first plane). A key may stand once.
std::variant<StringTable, StringsFileError> parseStringsFile(std::string_view bytes);

}  // namespace brivane
