#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Machines/Desk/File/DeskDescription.h"

namespace brivane {

/// The text that the key gives in the layout when pressed alone; nothing for keys that give none.
/// Dead keys give their accent; keys such as Return and the arrows give their control character.
std::optional<std::string> characterOfKey(KeyboardLayout layout, std::uint16_t keyCode);

}  // namespace brivane
