#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "BrivaneCore/Support/PanelIdentity.h"

namespace brivane {

/// A panel's identity and name, from the base block of its EDID.
struct EDID {
  /// The vendor is the stored 16-bit number of the three-letter manufacturer code, big-endian
  /// ("APP" is 0x0610); the model has 16 bits, too.
  PanelIdentity panel;
  /// Printable ASCII without blanks at either end; empty when the panel has no name.
  std::string name;

  bool operator==(const EDID&) const = default;
};

/// Reads the 128-byte base block at the start of `bytes`; what follows it is ignored. Nothing for
/// fewer bytes, another header or a wrong checksum. Pure.
std::optional<EDID> parseEDID(std::span<const std::uint8_t> bytes);

}  // namespace brivane
