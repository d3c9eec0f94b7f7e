#pragma once

#include <string_view>
#include <vector>

namespace brivane {

/// The names of all calls of the Machine seam that a desk can make fail, sorted.
const std::vector<std::string_view>& faultCalls();

}  // namespace brivane
