// The lines of a desk's trace, to the letter: transcripts are compared with them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Desk/Hardware/Trace.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TraceTest : public testing::Test {
 protected:
  TestDesk desk{R"({"displays": [{"identifier": 1, "builtIn": true}, {"identifier": 2}]})"};
  DeskMachine& machine = *desk.machine;
  DeskHardware& hardware = *desk.hardware;
  const std::shared_ptr<std::vector<std::string>> lines = desk.trace();
};

TEST_F(TraceTest, NamesTheBytesOfEveryTransfer) {
  const std::array<std::uint8_t, 4> get = {0x82, 0x01, 0x10, 0xFD};
  std::array<std::uint8_t, 3> reply{};
  hardware.monitors.writeI2C(2, 0x37, 0x51, get, {});
  hardware.monitors.readI2C(2, 0x37, 0x51, reply, {});
  hardware.monitors.writeI2C(2, 0x38, 0x50, get, {});
  hardware.monitors.readI2C(9, 0x37, 0x51, reply, {});
  EXPECT_THAT(*lines, ElementsAre("bus 2 write 82 01 10 FD", "bus 2 read 6E 88 02",
                                  "bus 2 write 82 01 10 FD, chip 56, address 80, refused",
                                  "bus 9 read, refused"));
}

TEST_F(TraceTest, SaysOfAGammaTableItsSizeADigestAndItsPeak) {
  const std::array<float, 2> dark = {0, 0.5F};
  const std::array<float, 3> bright = {0, 1, 1.5F};
  GammaTables& gamma = machine.gammaTables();
  gamma.writeTable(2, dark, dark, dark);
  gamma.writeTable(2, bright, bright, bright);
  hardware.gamma.refuse(2, 1);
  gamma.writeTable(2, dark, dark, dark);
  gamma.restoreCalibratedTables();
  EXPECT_THAT(*lines, ElementsAre("gamma 2 2 samples, digest 867075C454A5B0A8, peak 0.5",
                                  "gamma 2 3 samples, digest 9860BF07155CC4C5, peak 1.5",
                                  "gamma 2 2 samples, digest 867075C454A5B0A8, peak 0.5, refused",
                                  "gamma of all displays calibrated"));
}

TEST_F(TraceTest, GivesDetailsOnlyToWhoAsksForThem) {
  const std::array<float, 2> dark = {0, 0.5F};
  std::array<float, 1024> red{};
  auto green = red;
  auto blue = red;
  std::uint32_t returned = 0;
  std::vector<std::string> details;
  hardware.tracer->set([](const std::string&) {},
                       [&](const std::string& line) { details.push_back(line); });
  GammaTables& gamma = machine.gammaTables();
  gamma.readTable(2, red, green, blue, returned);
  gamma.writeTable(2, dark, dark, dark);
  hardware.gamma.refuse(2, 1);
  gamma.writeTable(2, dark, dark, dark);
  EXPECT_THAT(details,
              ElementsAre("gamma 2 is read", "gamma 2 takes 2 samples, such as 0 0.5 0 0.5 0 0.5",
                          "gamma 2 refuses 2 samples, such as 0 0.5 0 0.5 0 0.5"));
}

TEST_F(TraceTest, TakesSomeSamplesOfALongTableWithBothEnds) {
  EXPECT_THAT(tracedPlaces(3), ElementsAre(0, 1, 2));
  const auto places = tracedPlaces(1024);
  EXPECT_EQ(places.size(), 33U);
  EXPECT_EQ(places.front(), 0U);
  EXPECT_EQ(places.back(), 1023U);
}

TEST_F(TraceTest, TellsTablesApartThatDifferInOneBitOrInTheirChannels) {
  const GammaTable table = {GammaCurve{0, 1}, GammaCurve{0, 1}, GammaCurve{0, 0.5F}};
  GammaTable nearly = table;
  nearly[0][1] = std::nextafter(1.0F, 0.0F);
  const GammaTable turned = {table[2], table[1], table[0]};
  EXPECT_NE(tracedTable(table), tracedTable(nearly));
  EXPECT_NE(tracedTable(table), tracedTable(turned));
}

TEST_F(TraceTest, SaysWhatBecameOfThePanel) {
  hardware.panels.setLevel(1, 0.25F);
  hardware.panels.setLevel(2, 0.25F);
  hardware.panels.changeSystemBrightness(BrightnessKey::up);
  hardware.changes.unplug(1);
  hardware.panels.changeSystemBrightness(BrightnessKey::down);
  EXPECT_THAT(*lines, ElementsAre("display-services 1 level 0.25", "display-services 2 refused",
                                  "system brightness up, level 0.3125", "display 1 unplugged",
                                  "notice screen-parameters", "system brightness down, no panel"));
}

TEST_F(TraceTest, SaysWhatBecameOfSettingsAndTheLog) {
  machine.defaults().set("a", {std::int64_t{4}});
  machine.defaults().set("b", {std::string("x\ny")});
  machine.defaults().remove("a");
  machine.log().write("Brivane: hello");
  EXPECT_THAT(*lines, ElementsAre("setting a = 4", R"(setting b = "x\ny")", "setting a removed",
                                  "log Brivane: hello"));
}

TEST_F(TraceTest, SaysWhatWasRunAndWhatItDid) {
  ProcessRunner& processes = machine.processes();
  processes.run("/usr/bin/hidutil", {"property", "--get", "UserKeyMapping"});
  hardware.system.setHIDMapping({{0xC0000006F, 0x70000006E}, {0xC00000070, 0x70000006F}});
  processes.run("/usr/bin/hidutil", {"property", "--set", R"({"UserKeyMapping":[]})"});
  processes.run("/bin/launchctl", {"disable", "gui/501/com.quorrel.brivane"});
  processes.run("/bin/no", {});
  EXPECT_THAT(
      *lines,
      ElementsAre("run /usr/bin/hidutil property --get UserKeyMapping, status 0",
                  "hid-mapping C0000006F to 70000006E, C00000070 to 70000006F", "hid-mapping empty",
                  R"(run /usr/bin/hidutil property --set {"UserKeyMapping":[]}, status 0)",
                  "launch-agent disabled",
                  "run /bin/launchctl disable gui/501/com.quorrel.brivane, status 0",
                  "run /bin/no, not started"));
}

TEST_F(TraceTest, SaysWhatWasAskedOfTheSystem) {
  const auto reference =
      std::get<HotkeyReference>(machine.hotkeys().registerHotkey(126, 6144, {7, 1}));
  machine.hotkeys().registerHotkey(126, 6144, {7, 2});
  machine.hotkeys().unregisterHotkey(reference);
  auto tap = machine.eventTaps().createTap([](const TapEvent&) { return TapVerdict::swallow; });
  tap->setEnabled(true);
  tap->setEnabled(false);
  tap.reset();
  hardware.system.setAccessibilityGranted(false);
  machine.eventTaps().createTap([](const TapEvent&) { return TapVerdict::swallow; });
  machine.accessibility().requestTrust();
  machine.session().openURL("example:x");
  machine.applications().announce();
  EXPECT_THAT(*lines, ElementsAre("hotkey key 126 modifiers 6144 registered as 1",
                                  "hotkey key 126 modifiers 6144 is taken",
                                  "hotkey key 126 modifiers 6144 unregistered", "tap created",
                                  "tap enabled", "tap disabled", "tap removed",
                                  "accessibility revoked", "tap refused", "accessibility prompt",
                                  "open example:x", "application 501 announced"));
}

TEST_F(TraceTest, SaysWhatHappenedToTheDesk) {
  hardware.changes.setFrame(2, {0.5, -1, 100, 200});
  hardware.changes.setHeadroom(2, 4);
  hardware.changes.setScreenPresence(2, ScreenPresence::unnumbered);
  hardware.changes.swapPorts(1, 2);
  hardware.monitors.setLevelByButtons(2, 40);
  hardware.monitors.setMood(2, MonitorMood::silent);
  hardware.changes.sleepSystem();
  hardware.changes.wakeSystem({});
  hardware.system.movePointer({3, 4.5});
  hardware.system.setAppearance(DeskAppearance::dark);
  std::erase(*lines, "notice screen-parameters");
  EXPECT_THAT(*lines,
              ElementsAre("display 2 frame 0.5 -1 100 200", "display 2 headroom 4",
                          "display 2 has a screen without a number", "display 1 swaps ports with 2",
                          "monitor 2 buttons 40", "monitor 2 mood silent", "system asleep",
                          "monitor 2 asleep", "system awake", "notice did-wake", "monitor 2 awake",
                          "notice screens-did-wake", "pointer 3 4.5", "appearance dark",
                          "notice appearance"));
}

TEST_F(TraceTest, IsSilentOnceItIsRemoved) {
  hardware.tracer->set(nullptr);
  hardware.panels.setLevel(1, 0.25F);
  EXPECT_THAT(*lines, IsEmpty());
}

}  // namespace
}  // namespace brivane
