#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// One entry of the key mapping: HID usages, page in the upper 32 bits.
struct KeyMappingEntry {
  std::uint64_t source = 0;
  std::uint64_t destination = 0;

  bool operator==(const KeyMappingEntry&) const = default;
};

using UserKeyMapping = std::vector<KeyMappingEntry>;

/// The mapping in a JSON text `{"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":…,
/// "HIDKeyboardModifierMappingDst":…},…]}` with decimal numbers; nothing for any other text.
std::optional<UserKeyMapping> parseKeyMapping(const std::string& json);

/// The mapping as that JSON text, on one line.
std::string keyMappingJson(const UserKeyMapping& mapping);

/// The mapping in the Mac tool's output format: a parenthesised list of blocks in braces, one line
/// per number; "(null)" when empty. Ends with a line break.
std::string keyMappingListing(const UserKeyMapping& mapping);

}  // namespace brivane
