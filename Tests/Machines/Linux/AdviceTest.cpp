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

TEST(Advice, NothingMissingIsNothingSaid) {
  EXPECT_EQ(adviceFor(allWell, Findings{}), std::nullopt);
}

TEST(Advice, AServerThatCannotBeReachedIsAQuestionOfDISPLAYAndXAUTHORITY) {
  const GraphicsSession session{"the X server \":7\" cannot be reached", true, false};
  EXPECT_THAT(adviceFor(session, Findings{}),
              Optional(AllOf(HasSubstr("the X server \":7\" cannot be reached"),
                             HasSubstr("check DISPLAY and XAUTHORITY"))));
}

TEST(Advice, ASessionWithWaylandOnlyIsSentToX11) {
  const GraphicsSession session{"DISPLAY is not set", false, true};
  EXPECT_THAT(adviceFor(session, Findings{}), Optional(HasSubstr("log in to an X11 session")));
}

TEST(Advice, ATextConsoleIsToldToSetDISPLAY) {
  const GraphicsSession session{"DISPLAY is not set", false, false};
  EXPECT_THAT(adviceFor(session, Findings{}), Optional(HasSubstr("set DISPLAY")));
}

TEST(Advice, EachFindingHasItsRemedy) {
  Findings findings;
  findings.backlightDenied = true;
  EXPECT_THAT(adviceFor(allWell, findings), Optional(HasSubstr("backlight")));
  findings.keymapsDenied = true;
  EXPECT_THAT(adviceFor(allWell, findings),
              Optional(AllOf(HasSubstr("brivane-hidutil"), HasSubstr("root"))));
  findings.busDenied = true;
  EXPECT_THAT(adviceFor(allWell, findings), Optional(HasSubstr("udev rule")));
  findings.noBuses = true;
  EXPECT_THAT(adviceFor(allWell, findings), Optional(HasSubstr("modprobe i2c-dev")));
}

TEST(Advice, TheDisplaysComeFirstAndItIsAlwaysOneLine) {
  Findings findings;
  findings.noBuses = true;
  const auto advice = adviceFor({"DISPLAY is not set", false, false}, findings);
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
