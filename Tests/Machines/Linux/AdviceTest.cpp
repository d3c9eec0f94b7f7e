#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Linux/Advice.h"
#include "Machines/Linux/Machine.h"

namespace brivane {
namespace {

using testing::AllOf;
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
  missingAccess.busDenied = true;
  EXPECT_THAT(adviceFor(allWell, missingAccess), Optional(HasSubstr("udev rule")));
  missingAccess.noBuses = true;
  EXPECT_THAT(adviceFor(allWell, missingAccess), Optional(HasSubstr("modprobe i2c-dev")));
}

TEST(Advice, TheDisplaysComeFirstAndItIsAlwaysOneLine) {
  MissingAccess missingAccess;
  missingAccess.noBuses = true;
  const auto advice = adviceFor({"DISPLAY is not set", false, false}, missingAccess);
  EXPECT_THAT(advice, Optional(AllOf(HasSubstr("sees no displays"), Not(HasSubstr("i2c")),
                                     Not(HasSubstr("\n")))));
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
