// Plays the random days of some seeds, each once, up to the first that fails.
#include <filesystem>
#include <iostream>

#include "Machines/Common/Files/ResourceFolder.h"
#include "Tools/BrivaneDesk/ScenarioRun.h"
#include "Tools/BrivaneDesk/SwarmCommand.h"
#include "Tools/BrivaneDesk/Weather/RandomDay.h"

namespace {

/// Whether the day passed; prints its first failure.
bool passes(std::uint64_t seed, brivane::StageOptions& options) {
  options.seed = seed;
  const auto day =
      std::get<brivane::LoadedScenario>(brivane::loadScenarioText(brivane::randomDay(seed), "day"));
  const auto failures = brivane::playScenario(day, options).failures;
  if (failures.empty()) return true;
  const auto& failure = failures.front();
  std::cout << "seed " << seed << ", " << brivane::toSeconds(failure.time) << " s: " << failure.step
            << ": " << failure.found << std::endl;
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const auto seeds = brivane::parseSeeds(argc == 2 ? argv[1] : "");
  if (!seeds) {
    std::cerr << "expected seeds such as 1..200" << std::endl;
    return 2;
  }
  brivane::StageOptions options;
  options.resources = brivane::resourceFolder();
  options.isJudged = true;
  for (auto seed = seeds->first; seed <= seeds->last; ++seed) {
    // What ends the process tells by this line when it did.
    std::cout << "plays " << seed << std::endl;
    if (!passes(seed, options)) return 1;
  }
  return 0;
}
