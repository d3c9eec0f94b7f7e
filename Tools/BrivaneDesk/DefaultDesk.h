#pragma once

#include <string_view>

namespace brivane {

/// The text of the default desk's file.
extern const std::string_view defaultDesk;

}  // namespace brivane
