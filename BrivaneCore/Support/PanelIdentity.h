#pragma once

#include <compare>
#include <cstdint>

namespace brivane {

/// A panel's identity from its EDID: vendor, product and serial number; `serial` is 0 when the
/// panel reports none.
struct PanelIdentity {
  std::uint32_t vendor = 0;
  std::uint32_t model = 0;
  std::uint32_t serial = 0;

  auto operator<=>(const PanelIdentity&) const = default;
};

}  // namespace brivane
