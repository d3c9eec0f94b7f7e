#pragma once

#include <string>

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// The picture in words: one line per primitive with all its values, lengths and colours to four
/// decimals. Equal lists give equal texts, on every machine.
std::string describe(const DisplayList& list);

}  // namespace brivane
