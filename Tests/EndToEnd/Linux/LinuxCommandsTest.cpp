// The built program on a real X server and a bus that speaks DDC/CI.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "Tests/EndToEnd/Linux/LinuxWorld.h"
#include "Tests/EndToEnd/Support/Program.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

class LinuxCommandsTest : public testing::Test {
 protected:
  ProgramResult run(const std::vector<std::string>& arguments,
                    const std::map<std::string, std::string>& changes = {}) {
    auto environment = world.environment();
    for (const auto& [variable, value] : changes) environment[variable] = value;
    ProgramResult result = runProgram("Brivane", arguments, environment);
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    return result;
  }

  void pointAtLeft() { world.screens.warpPointer(800, 450); }
  void pointAtMiddle() { world.screens.warpPointer(2500, 800); }
  void pointAtRight() { world.screens.warpPointer(4000, 1000); }

  LinuxWorld world;
};

TEST_F(LinuxCommandsTest, SetLeavesTheMonitorUnderThePointerAtThatShareOfItsOwnMaximum) {
  pointAtMiddle();
  EXPECT_EQ(run({"--set", "40"}).output, "Set Middle 24 to 40%\n");
  EXPECT_EQ(world.luminance("DP-1"), 102);
  EXPECT_EQ(world.luminance("HDMI-A-1"), 50);
}

TEST_F(LinuxCommandsTest, WithThePointerOnAnotherDisplayThatOneChanges) {
  pointAtLeft();
  EXPECT_EQ(run({"--set", "40"}).output, "Set Left 20 to 40%\n");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 40);
  EXPECT_EQ(world.luminance("DP-1"), 255);
}

TEST_F(LinuxCommandsTest, ADisplayWithoutABusGetsTheFailureLine) {
  pointAtRight();
  EXPECT_THAT(run({"--set", "40"}).output,
              StartsWith("Failed to set Right 19 — no DDC channel.\n"));
}

TEST_F(LinuxCommandsTest, TheReportShowsEveryDisplay) {
  pointAtMiddle();
  const std::string report = run({"--probe"}).output;
  EXPECT_THAT(report, StartsWith("Brivane probe\n  DDC transport available: yes\n"
                                 "  Accessibility granted:   yes\n"));
  EXPECT_THAT(report, HasSubstr("] Middle 24\n      built-in: no\n"
                                "      vendor=2646 model=4098 serial=22\n"
                                "      control: DDC/CI -> 100%\n"
                                "      DDC:     current=255 max=255\n"));
  EXPECT_THAT(report, HasSubstr("] Left 20\n"));
  EXPECT_THAT(report, HasSubstr("      control: DDC/CI -> 50%\n"));
  EXPECT_THAT(report, HasSubstr("] Right 19\n"));
  EXPECT_THAT(report, HasSubstr("      control: NONE — "));
  EXPECT_THAT(report, HasSubstr("  Cursor is on: ["));
}

TEST_F(LinuxCommandsTest, AReportChangesNoLevelAndNoGamma) {
  const auto gamma = world.screens.gamma(1);
  run({"--probe"});
  EXPECT_EQ(world.luminance("DP-1"), 255);
  EXPECT_EQ(world.luminance("HDMI-A-1"), 50);
  EXPECT_EQ(world.screens.gamma(1), gamma);
}

TEST_F(LinuxCommandsTest, WhatWasSetIsRememberedInTheUsersSettings) {
  pointAtLeft();
  run({"--set", "40"});
  EXPECT_THAT(TemporaryFolder::read(world.settings()),
              HasSubstr("\"brightness.2646.4097.11\": 40"));
}

TEST_F(LinuxCommandsTest, BrokenSettingsAreKeptAndTheLevelIsStillSet) {
  std::filesystem::create_directories(world.settings().parent_path());
  std::ofstream(world.settings()) << "{\"brightness";
  pointAtLeft();
  EXPECT_EQ(run({"--set", "40"}).output, "Set Left 20 to 40%\n");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 40);
  int kept = 0;
  for (const auto& entry : std::filesystem::directory_iterator(world.settings().parent_path())) {
    kept += TemporaryFolder::read(entry.path()) == "{\"brightness" ? 1 : 0;
  }
  EXPECT_EQ(kept, 1);
}

TEST_F(LinuxCommandsTest, WithoutAnXServerTheReportSaysSoInItsOwnWordsAndAddsOneLineOfAdvice) {
  for (const auto* display : {"", ":4711"}) {
    const auto report = run({"--probe"}, {{"DISPLAY", display}});
    EXPECT_EQ(linesOf(report.output).back(), "  No displays reported by CoreGraphics.");
    EXPECT_THAT(linesOf(report.errors),
                ElementsAre(AllOf(StartsWith("Brivane sees no displays because "),
                                  HasSubstr("XAUTHORITY"))));
  }
  const auto report = run({"--set", "40"}, {{"DISPLAY", ""}});
  EXPECT_EQ(report.output, "Could not determine which display the cursor is on.\n");
  EXPECT_THAT(linesOf(report.errors), SizeIs(1));
}

TEST_F(LinuxCommandsTest, AMonitorThatHangsUpIsReportedWithoutHarm) {
  world.turn("DP-1", "mood", "silent");
  pointAtMiddle();
  const auto failure = run({"--set", "40"});
  EXPECT_EQ(failure.output, "Failed to set Middle 24 — no DDC channel.\n");
  EXPECT_THAT(failure.errors, StartsWith("The monitor on card0-DP-1 doesn't answer: "));
  const auto report = run({"--probe"});
  EXPECT_THAT(report.output, HasSubstr("control: NONE"));
  EXPECT_EQ(report.errors, failure.errors);
}

TEST_F(LinuxCommandsTest, UnmapFindsNothingOfBrivaneOnFreshKeyboards) {
  EXPECT_THAT(run({"--unmap"}).output,
              StartsWith("No Brivane entries were in the HID mapping — nothing to clear."));
}

TEST_F(LinuxCommandsTest, UnmapTakesBackAMappingOfTheTool) {
  const auto environment = world.environment();
  const ProgramResult mapped =
      runProgram("brivane-hidutil",
                 {"property", "--set",
                  R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":51539607663,)"
                  R"("HIDKeyboardModifierMappingDst":30064771182}]})"},
                 environment);
  ASSERT_EQ(mapped.exitStatus, 0) << mapped.errors;
  EXPECT_THAT(run({"--unmap"}).output, StartsWith("Brightness key mapping cleared."));
  EXPECT_THAT(run({"--unmap"}).output, StartsWith("No Brivane entries"));
}

TEST_F(LinuxCommandsTest, AfterUnmapOneLineOnStandardErrorSaysWhatToTypeOnLinux) {
  EXPECT_EQ(run({"--unmap"}).errors,
            "On Linux: brivane-defaults write SystemBrightnessKeysEnabled false\n");
}

TEST_F(LinuxCommandsTest, ASettingOfTheDefaultsToolIsTheProgramsOwn) {
  const std::vector<std::string> words = {"write", "SystemBrightnessKeysEnabled", "false"};
  const ProgramResult written = runProgram("brivane-defaults", words, world.environment());
  EXPECT_EQ(written.exitStatus, 0) << written.errors;
  EXPECT_THAT(TemporaryFolder::read(world.settings()),
              HasSubstr("\"SystemBrightnessKeysEnabled\": false"));
  EXPECT_THAT(run({"--probe"}).output, HasSubstr("System brightness keys: disabled"));
}

}  // namespace
}  // namespace brivane
