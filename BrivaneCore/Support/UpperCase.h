#pragma once

#include <string>
#include <string_view>

namespace brivane {

/// UTF-8 text in upper case, as Unicode maps it, for the letters that keyboards print: Latin with
/// the additions of the languages written in it, Greek, Cyrillic, Armenian. One letter may become
/// more ("ß" gives "SS"). Everything else stays, bytes that are no UTF-8 included; so do the
/// letters of scripts that know no cases in everyday use.
std::string upperCased(std::string_view text);

}  // namespace brivane
