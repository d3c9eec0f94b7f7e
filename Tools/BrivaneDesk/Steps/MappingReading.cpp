#include "Tools/BrivaneDesk/Steps/MappingReading.h"

#include <algorithm>
#include <array>
#include <set>

namespace brivane {
namespace {

// The keyboards' usages for brightness up and down.
constexpr std::array<std::uint64_t, 3> upSources = {0xFF01'00000020, 0x00FF'00000004,
                                                    0x000C'0000006F};
constexpr std::array<std::uint64_t, 3> downSources = {0xFF01'00000021, 0x00FF'00000005,
                                                      0x000C'00000070};

/// The destinations of the sources.
struct Destinations {
  std::set<std::uint64_t> keys;
  std::size_t entries = 0;
};

Destinations destinationsOf(const HIDMapping& mapping,
                            const std::array<std::uint64_t, 3>& sources) {
  Destinations found;
  for (const auto& entry : mapping) {
    if (std::ranges::count(sources, entry.source) == 0) continue;
    found.keys.insert(entry.destination);
    ++found.entries;
  }
  return found;
}

}  // namespace

std::string_view readMapping(const HIDMapping& mapping) {
  if (mapping.empty()) return "empty";
  const Destinations up = destinationsOf(mapping, upSources);
  const Destinations down = destinationsOf(mapping, downSources);
  if (up.entries == 0 && down.entries == 0) return "foreign";
  const bool isWhole = up.entries == 3 && down.entries == 3 && up.keys.size() == 1 &&
                       down.keys.size() == 1 && up.keys != down.keys;
  return isWhole ? "relay" : "partial";
}

}  // namespace brivane
