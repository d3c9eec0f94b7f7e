#pragma once

#include <cstdint>
#include <optional>

namespace brivane {

/// The VCP code of luminance, the only feature Brivane drives (VESA MCCS).
inline constexpr std::uint8_t luminanceCode = 0x10;

/// A feature's value as the monitor reports it.
struct VCPReading {
  std::uint16_t current = 0;
  std::uint16_t max = 0;

  bool operator==(const VCPReading&) const = default;
};

/// One monitor's DDC/CI channel. Both calls block for the waits that monitors need: a get for 40 to
/// about 180 ms, a set for 20 ms. A set on the main thread may overlap a get on the DDC queue.
class DDCTransport {
 public:
  virtual ~DDCTransport() = default;

  /// Reads one feature; nothing on any failure.
  virtual std::optional<VCPReading> getVCP(std::uint8_t code) = 0;

  /// Writes one feature; whether the bus accepted it.
  virtual bool setVCP(std::uint8_t code, std::uint16_t value) = 0;
};

}  // namespace brivane
