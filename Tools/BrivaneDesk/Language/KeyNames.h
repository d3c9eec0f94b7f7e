#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace brivane {

/// The virtual key code of the key with this name in scenarios, modifiers too; nothing for other
/// names. Brightness keys have no virtual key code.
std::optional<std::uint16_t> keyCodeOf(std::string_view name);

/// The flag of a modifier (see `modifierFlag`); 0 for other keys.
std::uint64_t modifierFlagOf(std::string_view name);

/// Whether scenarios know a key of this name.
bool isKeyName(std::string_view name);

/// The name of a key by its common other name: "ctrl" is "control". Nothing for other words.
std::optional<std::string_view> keyKnownAs(std::string_view word);

/// All names.
const std::vector<std::string_view>& keyNames();

}  // namespace brivane
