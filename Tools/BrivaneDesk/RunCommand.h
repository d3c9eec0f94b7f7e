#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <vector>

namespace brivane {

struct RunOptions {
  std::vector<std::filesystem::path> files;
  /// Writes the transcripts instead of comparing with them.
  bool regenerates = false;
  /// Prints every line as it happens, seam calls too.
  bool traces = false;
  /// Plays like `swarm`: the order of simultaneous events is drawn from the seed, the judge reads
  /// the trace, and no transcript is compared.
  std::optional<std::uint64_t> seed;
  /// The folder of the resource bundles.
  std::filesystem::path resources;
};

/// Plays the scenarios one after the other and prints the results. The exit status: 0 when all
/// passed, else 1.
int runScenarios(const RunOptions& options, std::ostream& out);

}  // namespace brivane
