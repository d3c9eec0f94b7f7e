#include <gmock/gmock.h>

#include "BrivaneCore/KeyRelay/HIDKeyMapping.h"
#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "Tests/BrivaneCore/KeyRelay/RelayKeys.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Arguments = std::vector<std::string>;

const Arguments get = {"property", "--get", "UserKeyMapping"};
const std::string capsLock = HIDKeyMapping::entry(30064771129, 30064771113);

/// A tool that keeps the mapping, and prints it in the form in which it was set.
struct HIDUtilKeyMappingTest : testing::Test {
  std::optional<std::string> run(const Arguments& arguments) {
    runs.push_back(arguments);
    if (arguments.at(1) == "--get") return canRead ? std::optional(printed) : std::nullopt;
    if (acceptsSet) printed = arguments.at(2);
    return acceptsSet ? std::optional<std::string>("") : std::nullopt;
  }

  std::string printed = "(null)\n";
  bool canRead = true;
  bool acceptsSet = true;
  std::vector<Arguments> runs;
  HIDUtilKeyMapping mapping{[this](const Arguments& arguments) { return run(arguments); }};
};

TEST_F(HIDUtilKeyMappingTest, ApplyingReadsTheMappingAndSetsIt) {
  const auto payload = HIDKeyMapping::mappingPayloadApplying(f19, f20, "");
  EXPECT_TRUE(mapping.apply(f19, f20));
  EXPECT_THAT(runs, ElementsAre(get, Arguments{"property", "--set", payload}));
  EXPECT_TRUE(mapping.isApplied(f19, f20));
}

TEST_F(HIDUtilKeyMappingTest, AUsersRemapSurvivesApplyingAndReverting) {
  mapping.apply(f13, f14);
  printed.insert(printed.find('[') + 1, capsLock + ",");
  EXPECT_TRUE(mapping.apply(f19, f20));
  EXPECT_TRUE(printed.starts_with("{\"UserKeyMapping\":[" + capsLock + ","));
  EXPECT_EQ(HIDKeyMapping::mappingPairs(printed).size(), 7U);
  EXPECT_TRUE(mapping.isApplied(f19, f20));
  EXPECT_FALSE(mapping.isApplied(f13, f14));
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_EQ(printed, "{\"UserKeyMapping\":[" + capsLock + "]}");
}

TEST_F(HIDUtilKeyMappingTest, ApplyingFailsWhenTheToolFails) {
  acceptsSet = false;
  EXPECT_FALSE(mapping.apply(f19, f20));
  canRead = false;
  runs.clear();
  EXPECT_FALSE(mapping.apply(f19, f20));
  EXPECT_THAT(runs, ElementsAre(get));
}

TEST_F(HIDUtilKeyMappingTest, EmptyOutputIsAnEmptyMapping) {
  printed = "";
  EXPECT_TRUE(mapping.apply(f19, f20));
  EXPECT_EQ(HIDKeyMapping::mappingPairs(printed).size(), 6U);
}

TEST_F(HIDUtilKeyMappingTest, RevertingOnlyOwnEntriesSetsAnEmptyMapping) {
  mapping.apply(f19, f20);
  runs.clear();
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_THAT(runs, ElementsAre(get, Arguments{"property", "--set", R"({"UserKeyMapping":[]})"}));
}

TEST_F(HIDUtilKeyMappingTest, RevertingAMappingWithoutOwnEntriesWritesNothing) {
  EXPECT_EQ(mapping.revert(), RevertOutcome::nothingToRemove);
  printed = capsLock;
  EXPECT_EQ(mapping.revert(), RevertOutcome::nothingToRemove);
  EXPECT_THAT(runs, ElementsAre(get, get));
}

TEST_F(HIDUtilKeyMappingTest, RevertingFailsWhenTheToolFails) {
  mapping.apply(f19, f20);
  acceptsSet = false;
  EXPECT_EQ(mapping.revert(), RevertOutcome::failed);
  canRead = false;
  EXPECT_EQ(mapping.revert(), RevertOutcome::failed);
}

TEST_F(HIDUtilKeyMappingTest, IsNotAppliedWhenTheMappingCannotBeRead) {
  mapping.apply(f19, f20);
  canRead = false;
  EXPECT_FALSE(mapping.isApplied(f19, f20));
}

struct DefaultRunnerTest : testing::Test {
  std::optional<std::string> run() {
    return HIDUtilKeyMapping::defaultRunner(machine.processes(), machine.log())(get);
  }

  FakeMachine machine;
};

TEST_F(DefaultRunnerTest, RunsHidutilAndGivesItsOutput) {
  machine.processRunner.results = {FinishedProcess{0, "(\n)\n"}};
  EXPECT_EQ(run(), "(\n)\n");
  EXPECT_THAT(machine.processRunner.runs,
              ElementsAre(Arguments{"/usr/bin/hidutil", "property", "--get", "UserKeyMapping"}));
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(DefaultRunnerTest, AnExitStatusOtherThanZeroGivesNothingAndLogsNothing) {
  for (const int status : {1, 137, -1}) {
    machine.processRunner.results = {FinishedProcess{status, "(\n)\n"}};
    EXPECT_EQ(run(), std::nullopt) << status;
  }
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(DefaultRunnerTest, AToolThatCannotBeStartedIsLoggedWithTheReason) {
  machine.processRunner.results = {ProcessNotStarted{"The file doesn’t exist."}};
  EXPECT_EQ(run(), std::nullopt);
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: could not run hidutil — The file doesn’t exist."));
}

TEST_F(DefaultRunnerTest, OutputThatIsNotUTF8CountsAsEmpty) {
  machine.processRunner.results = {FinishedProcess{0, "{ \xFF }"}};
  EXPECT_EQ(run(), "");
}

}  // namespace
}  // namespace brivane
