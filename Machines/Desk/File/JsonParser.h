#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "Machines/Desk/File/JsonValue.h"

namespace brivane {

/// The text's value, or what is wrong with it in one line: "line 3, column 7: ..." for bad syntax,
/// "/displays/0: the key \"name\" appears twice" for a repeated key. Nesting deeper than 32 levels
/// is bad syntax.
std::variant<JsonValue, std::string> parseJson(std::string_view text);

}  // namespace brivane
