#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneCore/Seams/Runtime.h"
#include "Tools/BrivaneDesk/Stage/Stage.h"
#include "Tools/BrivaneDesk/Weather/RandomDay.h"

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
  /// Goes on with the seeds after the last for this long.
  Microseconds duration{0};
  /// How many days are played at a time.
  std::size_t jobs = 1;
  /// What a day may take, in seconds of real time.
  unsigned limitSeconds = 120;
  /// The folder for the scenarios of failing days.
  std::filesystem::path keepFolder = ".";
  StageOptions stage;
  /// The day of a seed, as a scenario.
  std::function<std::string(std::uint64_t seed)> dayOf = [](std::uint64_t seed) {
    return randomDay(seed);
  };
};

/// Plays each seed's random day twice in a process of its own, with the order of simultaneous
/// events drawn from the seed: all expectations must hold, the judge must find no rule broken, and
/// both transcripts must be equal. Writes each failing day to a file; of those that fail alike, the
/// one with the lowest seed is cut down. Returns the exit status, that of the worst failure: 0 when
/// all went well, 1 for a failed step, 5 for a display that was never resolved, 4 for another
/// broken rule, 3 for a crash or a hang; 2 without the folder.
int runSwarm(const SwarmOptions& options, const Runtime& clock, std::ostream& out);

}  // namespace brivane
