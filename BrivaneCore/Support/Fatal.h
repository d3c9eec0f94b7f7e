#pragma once

#include <string_view>

namespace brivane {

/// Ends the process for a programming error: one sentence on standard error that says which, then
/// abort. Never for anything that a user, a monitor or a file can cause.
[[noreturn]] void fatal(std::string_view sentence);

}  // namespace brivane
