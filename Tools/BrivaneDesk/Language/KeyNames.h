#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace brivane {

/// The virtual key code of a key by its scenario name; modifiers are keys as well. Nothing for
/// other names, the keyboard's brightness keys among them: those have no virtual key code.
std::optional<std::uint16_t> keyCodeOf(std::string_view name);

/// The flag of a modifier (see `modifierFlag`); 0 for other keys.
std::uint64_t modifierFlagOf(std::string_view name);

/// Whether a scenario may name that key.
bool isKeyName(std::string_view name);

/// The name of the key that many know by another: "ctrl" is "control". Nothing for other words.
std::optional<std::string_view> keyKnownAs(std::string_view word);

/// Every name.
const std::vector<std::string_view>& keyNames();

}  // namespace brivane
