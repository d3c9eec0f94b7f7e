#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Machines/Mac/CoreFoundation/CFReference.h"

namespace brivane {

/// Empty when the bytes are no UTF-8.
CFReference<CFStringRef> makeCFText(std::string_view text);

/// As UTF-8; an unpaired surrogate becomes a question mark.
std::string textOf(CFStringRef text);

/// Nothing for null.
std::optional<std::string> optionalTextOf(CFStringRef text);

/// The path of a file URL; nothing for null and other URLs.
std::optional<std::string> pathOf(CFURLRef url);

}  // namespace brivane
