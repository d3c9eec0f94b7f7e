// The built resident program on a simulated machine, in real time: what only a process can show.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class DeskResidentTest : public testing::TestWithParam<int> {
 protected:
  std::map<std::string, std::string> environment() { return {{"BRIVANE_DESK", desk}}; }

  /// Listening to signals, its hotkeys and its relay in force.
  std::unique_ptr<RunningProgram> start() {
    auto program =
        std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, environment());
    EXPECT_TRUE(program->waitForError("Brivane: system brightness keys relayed through F19/F20\n"));
    return program;
  }

  ProgramResult run(const std::vector<std::string>& arguments) {
    return runProgram("Brivane", arguments, environment());
  }

  TemporaryFolder folder;
  std::filesystem::path desk = folder.write("desk.json", R"({"displays": [{"identifier": 2}]})");
};

TEST_P(DeskResidentTest, ASignalEndsItWithStatusZeroAndTheKeysAreBackWithTheSystem) {
  const auto program = start();
  program->signal(GetParam());
  EXPECT_EQ(program->wait().exitStatus, 0);
  EXPECT_THAT(run({"--unmap"}).output, StartsWith("No Brivane entries were in the HID mapping"));
}

TEST_P(DeskResidentTest, FurtherSignalsWhileItEndsChangeNothing) {
  const auto program = start();
  while (!program->hasEnded()) program->signal(GetParam());
  EXPECT_EQ(program->wait().exitStatus, 0);
}

INSTANTIATE_TEST_SUITE_P(Each, DeskResidentTest, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(DeskResidentTest, ASecondStartNamesTheFirstAndLeavesItAlone) {
  const auto program = start();
  const ProgramResult second = run({});
  EXPECT_EQ(second.exitStatus, 0);
  EXPECT_EQ(second.output, "");
  EXPECT_EQ(second.errors, "Brivane is already running (pid " +
                               std::to_string(program->processID()) + "); exiting.\n");
  EXPECT_THAT(run({"--set", "40"}).output, HasSubstr(" to 40%")) << "the modes work beside it";
  program->signal(SIGTERM);
  EXPECT_EQ(program->wait().exitStatus, 0);
}

TEST_F(DeskResidentTest, AfterItWasKilledTheNextOneStarts) {
  const auto killed = start();
  killed->signal(SIGKILL);
  EXPECT_EQ(killed->wait().exitStatus, 128 + SIGKILL);
  const auto next = start();
  next->signal(SIGTERM);
  EXPECT_EQ(next->wait().exitStatus, 0);
}

TEST_F(DeskResidentTest, OutsideABundleTwoCanRun) {
  folder.write("desk.json", R"({"bundleIdentifier": null, "displays": [{"identifier": 2}]})");
  const auto one = start();
  const auto two = start();
  for (const auto& program : {&one, &two}) (*program)->signal(SIGTERM);
  EXPECT_EQ(one->wait().exitStatus, 0);
  EXPECT_EQ(two->wait().exitStatus, 0);
}

}  // namespace
}  // namespace brivane
