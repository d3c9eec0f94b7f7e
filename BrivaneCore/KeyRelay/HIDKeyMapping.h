#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/KeyRelay/RelayKey.h"

namespace brivane {

/// The text forms of the HID key mapping: what `hidutil property` takes and prints. A usage is
/// written as one number, its page in the upper 32 bits.
struct HIDKeyMapping {
  struct Pair {
    std::uint64_t source = 0;
    std::uint64_t destination = 0;

    bool operator==(const Pair&) const = default;
  };

  /// Brightness up and down: two vendor pages on which keyboards report them, and the consumer page
  /// (page 0x0C: display brightness increment and decrement).
  static constexpr std::array<std::uint64_t, 3> upSources = {0xFF01'00000020, 0x00FF'00000004,
                                                             0x000C'0000006F};
  static constexpr std::array<std::uint64_t, 3> downSources = {0xFF01'00000021, 0x00FF'00000005,
                                                               0x000C'00000070};

  /// Whether entries with this source are the program's own, whatever their destination.
  static bool isOwnedSource(std::uint64_t source);

  /// One entry of the payload, as a JSON object without blanks.
  static std::string entry(std::uint64_t from, std::uint64_t to);

  /// The program's six entries: three for up, three for down.
  static std::vector<std::string> ownedEntries(const RelayKey& up, const RelayKey& down);

  /// The entries that the tool prints, in its order; those that can't be read are left out.
  static std::vector<Pair> mappingPairs(std::string_view printed);

  /// The mapping to set: the printed one's foreign entries, then the program's own.
  static std::string mappingPayloadApplying(const RelayKey& up, const RelayKey& down,
                                            std::string_view printed);

  /// The mapping to set without the program's entries; nothing when there are none.
  static std::optional<std::string> mappingPayloadPreservingOthers(std::string_view printed);

  /// Whether all of the program's six entries are printed, with these keys.
  static bool mappingIsPresent(std::string_view printed, const RelayKey& up, const RelayKey& down);
};

}  // namespace brivane
