#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Machines/Desk/File/DeskDescription.h"

namespace brivane {

/// The text that a key types without modifiers; nothing for keys that type none. Dead keys give
/// their accent; keys such as Return and the arrows their control character.
std::optional<std::string> characterOfKey(KeyboardLayout layout, std::uint16_t keyCode);

}  // namespace brivane
