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

/// "3..7", or "5" for one alone; nothing for other texts, and for more than a million seeds.
std::optional<SeedRange> parseSeeds(std::string_view text);

struct SwarmOptions {
  SeedRange seeds;
  /// Where the scenarios of days that failed are written.
  std::filesystem::path keepFolder = ".";
  /// Where the resource bundles lie.
  std::filesystem::path resources;
};

/// Plays the random day of each seed twice, with the order of simultaneous events drawn from the
/// seed: every expectation of the day has to hold, every gamma table that is put in force has to be
/// a known curve, and both have to give one transcript. The exit status: 0 when all went well,
/// else 1.
int runSwarm(const SwarmOptions& options, std::ostream& out);

}  // namespace brivane
