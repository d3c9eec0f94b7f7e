#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brivane {

/// ", did you mean "<word>"?" with the nearest of `words`: at most two letters wrong, missing, too
/// many or swapped. Empty when no word is that close.
std::string suggestion(std::string_view word, const std::vector<std::string_view>& words);

}  // namespace brivane
