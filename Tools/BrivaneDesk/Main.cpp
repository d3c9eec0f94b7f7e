#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Tools/BrivaneDesk/FaultsCommand.h"
#include "Tools/BrivaneDesk/Language/Tokens.h"
#include "Tools/BrivaneDesk/PokeCommand.h"
#include "Tools/BrivaneDesk/RunCommand.h"
#include "Tools/BrivaneDesk/SwarmCommand.h"
#include "Tools/BrivaneDesk/WatchCommand.h"

namespace {

constexpr std::string_view help = R"(brivane-desk run FILE... [--regenerate] [--trace] [--seed N]
    plays scenarios (docs/scenarios.md) on the shipping program, in virtual
    time, and compares what happened with the transcript beside each of them

    --regenerate   writes the transcripts instead
    --trace        prints everything as it happens
    --seed         plays as the swarm does: simultaneous events come in an
                   order drawn from N, and no transcript is compared

brivane-desk swarm --seeds A..B [--day D] [--hours H] [--jobs N] [--limit S]
                   [--keep FOLDER]
    plays a random day on a random desk for each seed; of the days that fail
    alike, one is cut down to what it takes to fail

    --day          how long a day lasts at least, for instance 24h; otherwise
                   some ten minutes
    --hours        goes on with the seeds after B until H hours have passed;
                   without --seeds from seed 1
    --jobs         plays N days at a time
    --limit        a day that takes more than S seconds hangs; by default 120
    --keep         where days that failed are written; by default the current
                   folder

    The exit status is that of the worst failure:
    0  all days went well     1  an expectation failed
    3  a crash or a hang      4  a rule was broken
    5  a display that answers was never resolved

brivane-desk faults FILE... [--jobs N]
    plays scenarios once for each call of the program to its machine, which
    fails: what can't be done must be said, and a second start leave nothing

brivane-desk poke [DESK] STEP
    does one step (docs/scenarios.md) to a running desk: programs on it meet
    it at once, and without any it is there for the next one. For instance:

    brivane-desk poke unplug 3
    brivane-desk poke mood 3 silent
    brivane-desk poke key control+option+up
    brivane-desk poke "move 2 to {-1920,0}"

brivane-desk watch [DESK]
    prints what a desk's hardware is like, and then every change, until it is
    interrupted

    DESK           the desk's file; by default the one in BRIVANE_DESK, else
                   the desk that ./run uses
)";

/// Prints a usage error; returns its exit status.
int misunderstood(const std::string& what) {
  std::cerr << "brivane-desk: " << what << "; --help lists what there is" << std::endl;
  return 2;
}

int unexpected(const std::string& expected, const std::string& found) {
  return misunderstood("expected " + expected + ", found " + found);
}

bool asksForHelp(const std::string& argument) {
  return argument == "--help" || argument == "-h";
}

/// Required: without resources texts are bare keys, and transcripts differ.
std::filesystem::path resources() {
  auto folder = brivane::resourceFolder();
  if (!std::filesystem::is_directory(folder)) {
    std::cerr << "brivane-desk: there are no texts and colours in " << folder.string()
              << "; build them with ./test scenarios" << std::endl;
  }
  return folder;
}

int run(const std::vector<std::string>& arguments) {
  brivane::RunOptions options;
  options.resources = resources();
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const auto& argument = arguments[index];
    if (argument == "--seed") {
      if (index + 1 == arguments.size()) return misunderstood("--seed needs a number, such as 7");
      const auto seeds = brivane::parseSeeds(arguments[++index]);
      if (!seeds || seeds->first != seeds->last) {
        return unexpected("a seed such as 7", arguments[index]);
      }
      options.seed = seeds->first;
    } else if (argument == "--regenerate") {
      options.regenerates = true;
    } else if (argument == "--trace") {
      options.traces = true;
    } else if (argument.starts_with("--")) {
      return misunderstood("run has no option " + argument);
    } else {
      options.files.emplace_back(argument);
    }
  }
  if (options.files.empty()) return misunderstood("run needs a scenario");
  return brivane::runScenarios(options, std::cout);
}

constexpr std::int64_t mostJobs = 256;
constexpr const char* jobsExpected = "a number from 1 to 256";

/// A whole number from 1 to `most`; nothing for other texts.
std::optional<std::int64_t> countIn(const std::string& text, std::int64_t most) {
  const auto number = brivane::parseInteger(text);
  return number && *number >= 1 && *number <= most ? number : std::nullopt;
}

/// Returns what the option expects, if the text isn't it.
std::string readSwarmOption(brivane::SwarmOptions& options, const std::string& option,
                            const std::string& text) {
  constexpr std::int64_t longestLimit = 86'400;
  constexpr brivane::Microseconds longestDay = std::chrono::hours(1000);
  if (option == "--seeds") {
    const auto seeds = brivane::parseSeeds(text);
    options.seeds = seeds.value_or(options.seeds);
    return seeds ? "" : "seeds such as 1..20";
  }
  if (option == "--day") {
    const brivane::Microseconds length(brivane::parseMicroseconds(text).value_or(-1));
    options.dayOf = [length](std::uint64_t seed) { return brivane::randomDay(seed, length); };
    const bool isPossible = length >= brivane::Microseconds(0) && length <= longestDay;
    return isPossible ? "" : "a length of time up to 1000h, such as 24h";
  }
  if (option == "--hours") {
    const auto duration = brivane::parseMicroseconds(text + "h");
    options.duration = brivane::Microseconds(duration.value_or(0));
    return duration ? "" : "hours such as 1.5";
  }
  if (option == "--jobs") {
    const auto jobs = countIn(text, mostJobs);
    options.jobs = static_cast<std::size_t>(jobs.value_or(1));
    return jobs ? "" : jobsExpected;
  }
  if (option == "--limit") {
    const auto seconds = countIn(text, longestLimit);
    options.limitSeconds = static_cast<unsigned>(seconds.value_or(1));
    return seconds ? "" : "seconds from 1 to 86400";
  }
  options.keepFolder = text;
  return "";
}

int swarm(const std::vector<std::string>& arguments) {
  constexpr std::array known = {"--seeds", "--day", "--hours", "--jobs", "--limit", "--keep"};
  brivane::SwarmOptions options;
  options.stage.resources = resources();
  options.seeds = {1, 1};
  for (std::size_t index = 0; index < arguments.size(); index += 2) {
    const auto& option = arguments[index];
    if (std::ranges::count(known, option) == 0) {
      return misunderstood("swarm does not understand " + option);
    }
    if (index + 1 == arguments.size()) return misunderstood(option + " needs a value");
    const auto& text = arguments[index + 1];
    const auto expected = readSwarmOption(options, option, text);
    if (!expected.empty()) return unexpected(expected, text);
  }
  const auto isGiven = [&](const char* option) {
    return std::ranges::count(arguments, option) > 0;
  };
  if (!isGiven("--seeds") && !isGiven("--hours")) {
    return misunderstood("swarm needs --seeds, such as --seeds 1..20, or --hours");
  }
  const brivane::ThreadRuntime clock;
  return brivane::runSwarm(options, clock, std::cout);
}

int faults(const std::vector<std::string>& arguments) {
  brivane::FaultsOptions options;
  options.resources = resources();
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const auto& argument = arguments[index];
    if (argument == "--jobs") {
      if (index + 1 == arguments.size()) return misunderstood("--jobs needs a value");
      const auto jobs = countIn(arguments[++index], mostJobs);
      if (!jobs) return unexpected(jobsExpected, arguments[index]);
      options.jobs = static_cast<std::size_t>(*jobs);
    } else if (argument.starts_with("--")) {
      return misunderstood("faults has no option " + argument);
    } else {
      options.files.emplace_back(argument);
    }
  }
  if (options.files.empty()) return misunderstood("faults needs a scenario");
  return brivane::runFaults(options, std::cout);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.empty() || std::ranges::any_of(arguments, asksForHelp)) {
    std::cout << help;
    return arguments.empty() ? 2 : 0;
  }
  const std::string command = arguments.front();
  arguments.erase(arguments.begin());
  if (command == "run") return run(arguments);
  if (command == "swarm") return swarm(arguments);
  if (command == "faults") return faults(arguments);
  if (command == "poke") return brivane::poke(std::move(arguments), std::cout, std::cerr);
  if (command == "watch") return brivane::watchDesk(std::move(arguments), std::cout, std::cerr);
  return misunderstood("there is no command " + command);
}
