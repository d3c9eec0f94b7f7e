#include "Tools/BrivaneDesk/SwarmCommand.h"

#include <fstream>
#include <ostream>

#include "BrivaneCore/Support/Numbers.h"
#include "Tools/BrivaneDesk/Weather/RandomDay.h"
#include "Tools/BrivaneDesk/ScenarioRun.h"

namespace brivane {
namespace {

/// The day's failure; nothing when it passed.
std::optional<std::string> playDay(const std::string& day, const std::string& name,
                                   const StageOptions& options) {
  const auto loaded = loadScenarioText(day, name);
  if (const auto* const mistake = std::get_if<std::string>(&loaded)) return *mistake;
  const auto& scenario = std::get<LoadedScenario>(loaded);
  const auto outcome = playScenario(scenario, options);
  if (!outcome.failures.empty()) {
    const auto& failure = outcome.failures.front();
    return "line " + std::to_string(failure.line) + ", at " +
           shortestDecimal(toSeconds(failure.time)) + " s: " + failure.step + "\n    found " +
           failure.found;
  }
  if (playScenario(scenario, options).transcript != outcome.transcript) {
    return "played again, it gives another transcript";
  }
  return std::nullopt;
}

}  // namespace

std::optional<SeedRange> parseSeeds(std::string_view text) {
  const auto dots = text.find("..");
  const auto first = parseInteger(text.substr(0, dots));
  const auto last = dots == std::string_view::npos ? first : parseInteger(text.substr(dots + 2));
  if (!first || !last || *first < 0 || *last < *first || *last - *first >= 1'000'000) {
    return std::nullopt;
  }
  return SeedRange{static_cast<std::uint64_t>(*first), static_cast<std::uint64_t>(*last)};
}

int runSwarm(const SwarmOptions& options, std::ostream& out) {
  StageOptions stageOptions;
  stageOptions.resources = options.resources;
  stageOptions.isJudged = true;
  int failed = 0;
  for (std::uint64_t seed = options.seeds.first; seed <= options.seeds.last; ++seed) {
    const std::string day = randomDay(seed);
    const std::string name = "seed-" + std::to_string(seed) + ".scenario";
    // Written before it is played, so that it is there after a crash, too.
    const auto file = options.keepFolder / name;
    std::ofstream stream(file, std::ios::binary);
    stream << day << std::flush;
    if (!stream) {
      out << file.string() << ": can't be written" << std::endl;
      return 1;
    }
    stageOptions.seed = seed;
    const auto problem = playDay(day, name, stageOptions);
    if (!problem) {
      std::filesystem::remove(file);
      out << "seed " << seed << ": well" << std::endl;
      continue;
    }
    ++failed;
    out << "seed " << seed << ": " << *problem << "\n    The day is in " << file.string()
        << "; play it with: brivane-desk run --seed " << seed << " --trace " << file.string()
        << std::endl;
  }
  const auto all = options.seeds.last - options.seeds.first + 1;
  out << all - static_cast<std::uint64_t>(failed) << " of " << all << " seeds went well"
      << std::endl;
  return failed == 0 ? 0 : 1;
}

}  // namespace brivane
