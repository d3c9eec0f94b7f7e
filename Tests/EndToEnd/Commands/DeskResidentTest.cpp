// The built resident program on a simulated machine, in real time: what needs a process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class DeskResidentTest : public testing::TestWithParam<int> {
 protected:
  /// Without a screen by default.
  std::map<std::string, std::string> environment() {
    return {{"BRIVANE_DESK", desk}, {"DISPLAY", display}, {"QT_QPA_PLATFORM", platform}};
  }

  /// Returns once signals are handled, and hotkeys and relay are in force.
  std::unique_ptr<RunningProgram> start() {
    auto program =
        std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, environment());
    EXPECT_TRUE(program->waitForError("Brivane: system brightness keys relayed through F19/F20\n"));
    return program;
  }

  ProgramResult run(const std::vector<std::string>& arguments) {
    return runProgram("Brivane", arguments, environment());
  }

  std::string display;
  std::string platform;
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

TEST_F(DeskResidentTest, AFatalErrorIsExactlyOneLineOfTheLog) {
  folder.write("desk.json",
               R"({"defaults": {"com.quorrel.brivane": {"BrightnessUpKeyCode": -1}}})");
  const ProgramResult result = run({});
  EXPECT_EQ(result.exitStatus, 128 + SIGABRT);
  const auto line = result.errors.find("Brivane: fatal: the setting BrightnessUpKeyCode holds -1");
  ASSERT_NE(line, std::string::npos) << result.errors;
  EXPECT_EQ(result.errors.find("Brivane: fatal: ", line + 1), std::string::npos) << result.errors;
}

/// A desk's log is standard error, too. A log that loses its lines shows whether the error went
/// through the log.
TEST_F(DeskResidentTest, AFatalErrorGoesToTheLog) {
  folder.write("desk.json",
               R"({"defaults": {"com.quorrel.brivane": {"BrightnessUpKeyCode": -1}},
                   "faults": {"SystemLog.write": [1, 2, 3, 4, 5, 6, 7, 8, 9]}})");
  const ProgramResult result = run({});
  EXPECT_EQ(result.exitStatus, 128 + SIGABRT);
  EXPECT_THAT(result.errors, Not(HasSubstr("fatal")));
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

TEST_F(DeskResidentTest, ShownByQtItEndsOnASignalAsWell) {
  platform = "offscreen";
  const auto program = start();
  program->signal(SIGTERM);
  const ProgramResult result = program->wait();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, Not(HasSubstr("plugin"))) << "what Qt says of itself is no news";
  EXPECT_THAT(run({"--unmap"}).output, StartsWith("No Brivane entries were in the HID mapping"));
}

TEST_F(DeskResidentTest, AnXServerThatDoesNotAnswerIsReportedInExactlyOneLine) {
  display = ":4711";
  const auto program = start();
  program->signal(SIGTERM);
  const ProgramResult result = program->wait();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(
      result.errors,
      HasSubstr("Brivane: nothing can be shown on a screen: the X server :4711 doesn't answer\n"));
}

TEST_F(DeskResidentTest, WithoutQtTheLogSaysWhatIsMissingAndTheProgramWorks) {
  // A copy of the program without the module.
  const auto programs = folder.path / "bin";
  std::filesystem::create_directories(programs);
  std::filesystem::copy(programFolder() / "Brivane", programs / "Brivane");
  std::filesystem::copy(programFolder().parent_path() / "share", folder.path / "share",
                        std::filesystem::copy_options::recursive);
  platform = "offscreen";
  RunningProgram program((programs / "Brivane").string(), {}, environment());
  EXPECT_TRUE(program.waitForError("Brivane: system brightness keys relayed through F19/F20\n"));
  program.signal(SIGTERM);
  const ProgramResult result = program.wait();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, HasSubstr("brivane-qt.so: cannot open shared object file"));
  EXPECT_THAT(result.errors, HasSubstr("(package libqt6widgets6)\n"));
}

}  // namespace
}  // namespace brivane
