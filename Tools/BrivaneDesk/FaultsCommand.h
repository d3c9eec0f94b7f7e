#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <vector>

namespace brivane {

struct FaultsOptions {
  std::vector<std::filesystem::path> files;
  /// How many calls have their turn at a time.
  std::size_t jobs = 1;
  /// The folder of the resource bundles.
  std::filesystem::path resources;
};

/// Plays each scenario once for each seam call of its first program, which fails: the first call of
/// a name, then the second, until the program makes no more of them. Nothing may crash, hang or
/// break a rule; an expectation that doesn't hold must go with a line that a calm day doesn't have,
/// of the log, the HUD, the menu or the command's output; and from the second `start` all must
/// hold. Returns the exit status: 0 when all that was so, else 1.
int runFaults(const FaultsOptions& options, std::ostream& out);

}  // namespace brivane
