#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Machines/Common/Files/ResourceFolder.h"
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

brivane-desk swarm --seeds A..B [--keep FOLDER]
    plays a random day on a random desk for each seed

    --keep         where scenarios that failed are written; by default the
                   current folder

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
        return misunderstood("expected a seed such as 7, found " + arguments[index]);
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

int swarm(const std::vector<std::string>& arguments) {
  brivane::SwarmOptions options;
  options.resources = resources();
  bool hasSeeds = false;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const bool hasValue = index + 1 < arguments.size();
    if (arguments[index] == "--seeds") {
      if (!hasValue) return misunderstood("--seeds needs numbers, such as 1..20");
      const auto seeds = brivane::parseSeeds(arguments[++index]);
      if (!seeds) return misunderstood("expected seeds such as 1..20, found " + arguments[index]);
      options.seeds = *seeds;
      hasSeeds = true;
    } else if (arguments[index] == "--keep") {
      if (!hasValue) return misunderstood("--keep needs a folder");
      options.keepFolder = arguments[++index];
    } else {
      return misunderstood("swarm does not understand " + arguments[index]);
    }
  }
  if (!hasSeeds) return misunderstood("swarm needs --seeds, such as --seeds 1..20");
  return brivane::runSwarm(options, std::cout);
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
  if (command == "poke") return brivane::poke(std::move(arguments), std::cout, std::cerr);
  if (command == "watch") return brivane::watchDesk(std::move(arguments), std::cout, std::cerr);
  return misunderstood("there is no command " + command);
}
