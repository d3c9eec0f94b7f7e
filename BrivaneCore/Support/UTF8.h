#pragma once

#include <string_view>

namespace brivane {

/// Whether the bytes are well-formed UTF-8 (RFC 3629: shortest forms only, no surrogates, nothing
/// above U+10FFFF). Empty text is.
bool isValidUTF8(std::string_view bytes);

}  // namespace brivane
