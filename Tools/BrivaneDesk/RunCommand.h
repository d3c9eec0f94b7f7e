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
  /// Prints everything as it happens, every call of a seam included.
  bool traces = false;
  /// Plays as the swarm does: the order of simultaneous events is drawn from it, every gamma table
  /// must be a known curve, and there is no transcript to compare with.
  std::optional<std::uint64_t> seed;
  /// Where the resource bundles lie.
  std::filesystem::path resources;
};

/// Plays the scenarios one after the other and says how they went. The exit status: 0 when all
/// passed, else 1.
int runScenarios(const RunOptions& options, std::ostream& out);

}  // namespace brivane
