#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Linux/Advice.h"
#include "Machines/Linux/Machine.h"

namespace brivane {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::Optional;

const GraphicsSession allWell{std::nullopt, true, false};

TEST(Advice, WithNothingMissingThereIsNone) {
  EXPECT_EQ(adviceFor(allWell, MissingAccess{}), std::nullopt);
}

TEST(Advice, AnUnreachableServerPointsToDISPLAYAndXAUTHORITY) {
  const GraphicsSession session{"the X server \":7\" cannot be reached", true, false};
  EXPECT_THAT(adviceFor(session, MissingAccess{}),
              Optional(AllOf(HasSubstr("the X server \":7\" cannot be reached"),
                             HasSubstr("check DISPLAY and XAUTHORITY"))));
}

TEST(Advice, ASessionWithWaylandOnlyIsSentToX11) {
  const GraphicsSession session{"DISPLAY is not set", false, true};
  EXPECT_THAT(adviceFor(session, MissingAccess{}), Optional(HasSubstr("log in to an X11 session")));
}

TEST(Advice, ATextConsolePointsToDISPLAY) {
  const GraphicsSession session{"DISPLAY is not set", false, false};
  EXPECT_THAT(adviceFor(session, MissingAccess{}), Optional(HasSubstr("set DISPLAY")));
}

TEST(Advice, EachMissingAccessHasItsRemedy) {
  MissingAccess missingAccess;
  missingAccess.backlightDenied = true;
  EXPECT_THAT(adviceFor(allWell, missingAccess), Optional(HasSubstr("backlight")));
  missingAccess.keymapsDenied = true;
  EXPECT_THAT(adviceFor(allWell, missingAccess),
              Optional(AllOf(HasSubstr("brivane-hidutil"), HasSubstr("root"))));
  missingAccess.buses.note("card0-DP-1", BusTrouble::notPermitted);
  EXPECT_THAT(adviceFor(allWell, missingAccess), Optional(HasSubstr("udev rule")));
  missingAccess.noBuses = true;
  EXPECT_THAT(adviceFor(allWell, missingAccess), Optional(HasSubstr("modprobe i2c-dev")));
}

TEST(Advice, EachReasonWhyAMonitorIsNotReachedHasItsRemedyTheFirstToBeRemediedFirst) {
  MissingAccess missingAccess;
  int number = 0;
  for (const auto& [trouble, remedy] :
       {std::pair{BusTrouble::noBus, "No I2C bus leads to the monitor on card0-DP-1"},
        {BusTrouble::noAnswer, "card0-DP-2 doesn't answer: switch on DDC/CI"},
        {BusTrouble::asleep, "card0-DP-3 is on stand-by: wake it"},
        {BusTrouble::busy, "Another program uses the I2C bus of the monitor on card0-DP-4"},
        {BusTrouble::notPermitted, "udev rule"}}) {
    missingAccess.buses.note("card0-DP-" + std::to_string(++number), trouble);
    EXPECT_THAT(adviceFor(allWell, missingAccess), Optional(HasSubstr(remedy)));
  }
  missingAccess.buses.noteResult("card0-DP-5", 0);
  missingAccess.buses.noteResult("card0-DP-4", 0);
  EXPECT_THAT(adviceFor(allWell, missingAccess), Optional(HasSubstr("card0-DP-3")));
}

TEST(Advice, TheDisplaysComeFirstAndItIsAlwaysOneLine) {
  MissingAccess missingAccess;
  missingAccess.noBuses = true;
  const auto advice = adviceFor({"DISPLAY is not set", false, false}, missingAccess);
  EXPECT_THAT(advice, Optional(AllOf(HasSubstr("sees no displays"), Not(HasSubstr("i2c")),
                                     Not(HasSubstr("\n")))));
}

TEST(Advice, ForACommandOfTheMacThatAReportNamesLinuxHasItsOwn) {
  EXPECT_EQ(
      insteadOfMacCommand("  defaults write com.quorrel.brivane SubZeroDimming -bool false", {}),
      "On Linux: brivane-defaults write SubZeroDimming false");
  const auto* const bootout = "  launchctl bootout gui/$(id -u)/com.quorrel.brivane";
  EXPECT_EQ(insteadOfMacCommand(bootout, {4711}), "On Linux: kill 4711");
  EXPECT_EQ(insteadOfMacCommand(bootout, {}), std::nullopt) << "it has ended meanwhile";
}

TEST(LinuxMachine, WhatToTypeInsteadOfTheMacsCommandFollowsWhatIsMissingOnTheSameLine) {
  unsetenv("DISPLAY");
  LinuxMachine machine;
  machine.noteMacCommand("defaults write com.quorrel.brivane SubZeroDimming -bool false");
  EXPECT_EQ(machine.advice(), "On Linux: brivane-defaults write SubZeroDimming false");
  machine.displays().onlineDisplayCount();
  EXPECT_THAT(machine.advice(), Optional(AllOf(HasSubstr("DISPLAY is not set"),
                                               EndsWith(". On Linux: brivane-defaults write "
                                                        "SubZeroDimming false"))));
}

TEST(LinuxMachine, AdvisesOnlyOnWhatItWasAskedFor) {
  unsetenv("DISPLAY");
  LinuxMachine machine;
  EXPECT_EQ(machine.advice(), std::nullopt);
  EXPECT_EQ(machine.displays().onlineDisplayCount(), std::nullopt);
  EXPECT_THAT(machine.advice(), Optional(HasSubstr("DISPLAY is not set")));
}

}  // namespace
}  // namespace brivane
