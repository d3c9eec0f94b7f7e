#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "BrivaneCore/DDC/DDCTransport.h"

namespace brivane {

/// The DDC/CI messages that read and write one VCP feature (VESA DDC/CI 1.1), as they are handed to
/// an I2C channel that adds the source address by itself.
struct VCPMessages {
  using GetRequest = std::array<std::uint8_t, 4>;
  using SetRequest = std::array<std::uint8_t, 6>;

  static GetRequest getRequest(std::uint8_t code);
  static SetRequest setRequest(std::uint8_t code, std::uint16_t value);

  /// Where the payload of a reply for `code` starts; nothing when none is found.
  static std::optional<std::size_t> replyBase(std::span<const std::uint8_t> reply,
                                              std::uint8_t code);

  /// The feature's value in a reply for `code`; nothing when there is no payload or when its
  /// numbers can't be a level (maximum 0, or current above maximum). Nothing else of the reply is
  /// checked.
  static std::optional<VCPReading> parseReply(std::span<const std::uint8_t> reply,
                                              std::uint8_t code);
};

}  // namespace brivane
