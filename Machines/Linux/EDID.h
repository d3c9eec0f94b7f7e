#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace brivane {

/// What a panel says about itself in the base block of its EDID.
struct EDID {
  /// The three-letter manufacturer code as the 16-bit number it is stored as, most significant byte
  /// first ("APP" is 0x0610).
  std::uint32_t vendor = 0;
  /// The manufacturer's product code, 16 bits.
  std::uint32_t model = 0;
  /// 0 when the panel reports none.
  std::uint32_t serial = 0;
  /// Printable ASCII without blanks at either end; empty when the panel has no name.
  std::string name;

  bool operator==(const EDID&) const = default;
};

/// Reads the 128-byte base block at the start of `bytes`; what follows it is ignored. Nothing for
/// fewer bytes, another header or a wrong checksum. Pure.
std::optional<EDID> parseEDID(std::span<const std::uint8_t> bytes);

}  // namespace brivane
