#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tools/BrivaneDesk/DayCutter.h"
#include "Tools/BrivaneDesk/RunCommand.h"
#include "Tools/BrivaneDesk/SwarmCommand.h"

namespace brivane {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

const std::string plainDay =
    "desk {\"displays\": [{\"identifier\": 1, \"firmware\": {\"maximum\": 50}}]}\nat 0s start\n"
    "+1s key control+option+up\n+1s quit\n";
const std::string dayWithAPlant =
    "desk {\"displays\": [\n  {\"identifier\": 1, \"name\": \"One\"},\n"
    "  {\"identifier\": 2, \"name\": \"Two\", \"firmware\": {\"maximum\": 50}}],\n"
    "  \"appearance\": \"dark\"}\n"
    "at 0s start\n+1s key control+option+up\n+1s buttons 2 33\n+1s unplug 1\n+1s pointer 2\n"
    "at 10s expect no trace \"buttons 2 33\"\n+1s quit\n";

class SwarmCommandTest : public ::testing::Test {
 public:
  SwarmCommandTest() {
    options.keepFolder = folder.path;
    options.seeds = {3, 3};
    options.dayOf = [](std::uint64_t) { return dayWithAPlant; };
  }

  int play() { return runSwarm(options, clock, out); }
  std::string kept(const std::string& name) const { return TemporaryFolder::read(folder / name); }

  const TemporaryFolder folder;
  const ThreadRuntime clock;
  SwarmOptions options;
  std::ostringstream out;
};

TEST_F(SwarmCommandTest, ADayThatFailsIsCutDownToAScenarioThatStillFails) {
  EXPECT_EQ(play(), 1);
  EXPECT_EQ(kept("seed-3.scenario"),
            "# Of the random day of seed 3, what it takes to fail. Play it with --seed 3.\n"
            "desk {\"displays\":[\n  {\"identifier\":2}]}\n"
            "+1s buttons 2 33\n"
            "at 10s expect no trace \"buttons 2 33\"\n");
  EXPECT_THAT(out.str(), HasSubstr("seed 3: line 10, at 10 s: expect no trace"));
  EXPECT_THAT(out.str(), HasSubstr("0 of 1 seeds went well; 11 s simulated"));
  RunOptions again;
  again.files = {folder / "seed-3.scenario"};
  again.seed = 3;
  std::ostringstream output;
  EXPECT_EQ(runScenarios(again, output), 1);
  EXPECT_THAT(output.str(), HasSubstr("expect no trace \"buttons 2 33\"\n    found"));
}

TEST_F(SwarmCommandTest, ADayThatCrashesIsCutDownAndTheOthersArePlayed) {
  options.seeds = {3, 5};
  options.dayOf = [](std::uint64_t seed) { return seed == 4 ? dayWithAPlant : plainDay; };
  options.stage.onLine = [](const std::string& line) {
    if (line.ends_with("> buttons 2 33")) std::abort();
  };
  EXPECT_EQ(play(), 3);
  EXPECT_THAT(kept("seed-4.scenario"), EndsWith("}]}\n+1s buttons 2 33\n"));
  EXPECT_THAT(out.str(), HasSubstr("seed 4: it crashes: Aborted"));
  EXPECT_THAT(out.str(), HasSubstr("2 of 3 seeds went well"));
  EXPECT_THAT(folder.names(), ElementsAre("seed-4.scenario"));
}

TEST_F(SwarmCommandTest, ADayThatHangsIsCutDown) {
  options.limitSeconds = 1;
  options.dayOf = [](std::uint64_t) { return "desk {}\nstart\n+90000h end\nwake\n"; };
  EXPECT_EQ(play(), 3);
  EXPECT_THAT(out.str(), HasSubstr("seed 3: it hangs"));
  EXPECT_THAT(kept("seed-3.scenario"), EndsWith("\ndesk {}\nstart\n+90000h end\n"));
}

TEST_F(SwarmCommandTest, ABrokenRuleHasAnExitStatusOfItsOwnAndTheWorstFailureCounts) {
  // A window system that has forgotten the panel's identity makes the program store under another.
  std::string faults = "1";
  for (int occurrence = 2; occurrence <= 200; ++occurrence) {
    faults += ", " + std::to_string(occurrence);
  }
  options.seeds = {1, 2};
  options.dayOf = [&](std::uint64_t seed) {
    if (seed == 1) return dayWithAPlant;
    return "desk {\"displays\": [{\"identifier\": 1, \"serial\": 5}], \"faults\": "
           "{\"DisplaySystem.panelIdentity\": [" +
           faults + "]}}\nat 0s start\n+1s key control+option+up\n+1s end\n";
  };
  EXPECT_EQ(play(), 4);
  EXPECT_THAT(out.str(), HasSubstr("a level is stored only when it was set or seen"));
}

TEST_F(SwarmCommandTest, OfDaysThatFailAlikeTheFirstIsCutDownAndTheOthersAreKeptWhole) {
  options.seeds = {3, 4};
  EXPECT_EQ(play(), 1);
  EXPECT_THAT(kept("seed-3.scenario"), StartsWith("# Of the random day"));
  EXPECT_EQ(kept("seed-4.scenario"), dayWithAPlant);
}

TEST_F(SwarmCommandTest, SeveralJobsGiveTheVerdictsOfOne) {
  options.seeds = {1, 6};
  options.dayOf = [](std::uint64_t seed) { return seed % 2 == 0 ? dayWithAPlant : plainDay; };
  const auto resultWith = [this](std::size_t jobs) {
    out.str("");
    options.jobs = jobs;
    EXPECT_EQ(play(), 1);
    std::multiset<std::string> lines;
    std::istringstream said(out.str());
    for (std::string line; std::getline(said, line);) lines.insert(line.substr(0, line.find(';')));
    for (const auto& name : folder.names()) lines.insert(kept(name));
    return lines;
  };
  const auto one = resultWith(1);
  EXPECT_EQ(one.count("3 of 6 seeds went well"), 1U);
  EXPECT_EQ(resultWith(3), one);
}

TEST_F(SwarmCommandTest, GoesOnBehindTheLastSeedForAWhile) {
  options.duration = std::chrono::milliseconds(500);
  options.dayOf = [](std::uint64_t) { return plainDay; };
  EXPECT_EQ(play(), 0);
  EXPECT_THAT(out.str(), testing::Not(HasSubstr("1 of 1 seeds")));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(SwarmCommandTest, AFolderThatIsMissingIsSaidSo) {
  options.keepFolder = "/no/such/folder";
  EXPECT_EQ(play(), 2);
  EXPECT_EQ(out.str(), "/no/such/folder: there is no such folder\n");
}

TEST(SwarmCommand, SeedsAreARange) {
  EXPECT_EQ(parseSeeds("3..7"), (SeedRange{3, 7}));
  EXPECT_EQ(parseSeeds("5"), (SeedRange{5, 5}));
  for (const auto* const text : {"", "7..3", "a..b", "1..", "..2", "-1..2", "0..1000000"}) {
    EXPECT_EQ(parseSeeds(text), std::nullopt) << text;
  }
}

TEST(DayCutter, KeepsWhatAFailureTakesTogether) {
  // Two steps that fail only together, on a display with one of its two members.
  const std::string day =
      "desk {\"displays\": [{\"identifier\": 1}, {\"identifier\": 2, \"headroom\": 4, "
      "\"name\": \"Two\"}], \"faults\": {\"UserDefaults.set\": [3]}}\n"
      "start\nunplug 1\nplug 1\nsleep\nwake\nquit\n";
  DayCutter cutter(day, [](const std::string& text) {
    return text.find("start\n") < text.find("quit\n") && text.ends_with("quit\n") &&
           text.find("headroom") != std::string::npos;
  });
  EXPECT_EQ(cutter.shortest(), "desk {\"displays\":[{\"headroom\":4}]}\nstart\nquit\n");
}

TEST(DayCutter, LeavesADayThatDoesNotFailAgain) {
  DayCutter cutter(plainDay, [](const std::string&) { return false; });
  EXPECT_EQ(cutter.shortest(), plainDay);
}

}  // namespace
}  // namespace brivane
