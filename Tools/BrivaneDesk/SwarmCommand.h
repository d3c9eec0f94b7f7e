#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string_view>

namespace brivane {

struct SeedRange {
  std::uint64_t first = 0;
  std::uint64_t last = 0;

  bool operator==(const SeedRange&) const = default;
};

/// "3..7", or "5" for a single seed; nothing for other texts and for more than a million seeds.
std::optional<SeedRange> parseSeeds(std::string_view text);

struct SwarmOptions {
  SeedRange seeds;
  /// The folder for the scenarios of failing days.
  std::filesystem::path keepFolder = ".";
  /// The folder of the resource bundles.
  std::filesystem::path resources;
};

/// Plays each seed's random day twice, with the order of simultaneous events drawn from the seed:
/// all expectations must hold, the judge must find no rule broken, and both transcripts must be
/// equal. The exit status: 0 when all passed, else 1.
int runSwarm(const SwarmOptions& options, std::ostream& out);

}  // namespace brivane
