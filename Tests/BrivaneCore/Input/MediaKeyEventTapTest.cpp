#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Input/MediaKeyEventTap.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto passThrough = TapVerdict::passThrough;
constexpr auto swallow = TapVerdict::swallow;
constexpr std::uint32_t volumeUp = 0;
constexpr std::uint32_t brightnessUp = 2;
constexpr std::uint32_t brightnessDown = 3;
constexpr std::uint32_t keyUp = 0x0B;

struct MediaKeyEventTapTest : testing::Test {
  MediaKeyEventTapTest() {
    machine.access.trusted = true;
    tap->onBrightnessKey = [this](BrightnessDirection direction) {
      machine.notes.add(direction == BrightnessDirection::up ? "up" : "down");
      return displayTakesIt;
    };
  }

  void start() {
    ASSERT_TRUE(tap->start());
    machine.notes.take();
  }
  void logKeys() { machine.settings.set("VerboseKeyLog", {true}); }
  TapVerdict send(std::int16_t subtype, std::int64_t data1, std::int64_t data2 = -1) {
    return machine.taps.send({.type = TapEvent::systemDefined,
                              .details = TapEvent::SystemDefined{subtype, data1, data2}});
  }

  FakeMachine machine;
  bool displayTakesIt = true;
  std::unique_ptr<MediaKeyEventTap> tap = std::make_unique<MediaKeyEventTap>(machine);
};

TEST_F(MediaKeyEventTapTest, StartsWithTheGrantAndEnablesTheTap) {
  EXPECT_FALSE(tap->isRunning());
  EXPECT_TRUE(tap->start());
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] create tap", "[0] enable tap"));
  EXPECT_TRUE(tap->isRunning());
}

TEST_F(MediaKeyEventTapTest, StartingAgainSucceedsAndDoesNothing) {
  start();
  machine.access.trusted = false;
  EXPECT_TRUE(tap->start()) << "the grant is asked about only for a new tap";
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(MediaKeyEventTapTest, WithoutTheGrantNoTapIsTried) {
  machine.access.trusted = false;
  EXPECT_FALSE(tap->start());
  EXPECT_FALSE(tap->isRunning());
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  EXPECT_EQ(machine.access.prompts, 0);
}

TEST_F(MediaKeyEventTapTest, ARefusedTapIsNotRunningAndNotRetried) {
  machine.taps.refuses = true;
  EXPECT_FALSE(tap->start());
  EXPECT_FALSE(tap->isRunning());
  machine.time.runFor(std::chrono::minutes(10));
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] create tap"));
}

TEST_F(MediaKeyEventTapTest, StoppingDisablesTheTapAndRemovesIt) {
  start();
  tap->stop();
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] disable tap", "[0] remove tap"));
  EXPECT_FALSE(tap->isRunning());
  tap->stop();
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  EXPECT_TRUE(tap->start());
}

TEST_F(MediaKeyEventTapTest, DroppingTheTapRemovesItFromTheStream) {
  start();
  tap.reset();
  EXPECT_FALSE(machine.taps.exists());
}

TEST_F(MediaKeyEventTapTest, APressThatADisplayTakesIsSwallowedAndItsReleasePasses) {
  start();
  EXPECT_EQ(machine.taps.sendKey(brightnessDown), swallow);
  EXPECT_EQ(machine.taps.sendKey(brightnessDown, keyUp), passThrough);
  EXPECT_EQ(machine.taps.sendKey(brightnessUp), swallow);
  EXPECT_EQ(machine.taps.sendKey(brightnessUp, keyUp), passThrough);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] down", "[0] up"));
}

TEST_F(MediaKeyEventTapTest, APressThatNoDisplayTakesPassesToTheSystem) {
  start();
  displayTakesIt = false;
  EXPECT_EQ(machine.taps.sendKey(brightnessUp), passThrough);
  EXPECT_EQ(machine.taps.sendKey(brightnessDown), passThrough);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] up", "[0] down"));
}

TEST_F(MediaKeyEventTapTest, TheKeyboardsOwnRepeatsArePresses) {
  start();
  EXPECT_EQ(send(8, 0x00020A01), swallow);
  EXPECT_EQ(send(8, 0x00020A01), swallow);
  EXPECT_EQ(send(8, 0x00020B01), passThrough);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] up", "[0] up"));
  EXPECT_EQ(machine.time.timerCount(), 0u) << "repeats are not ramped";
}

TEST_F(MediaKeyEventTapTest, EventsThatAreNoSpecialKeysPass) {
  start();
  EXPECT_EQ(send(7, 0x00020A00), passThrough);
  EXPECT_EQ(send(8, 0x00020A00 ^ 0x0100), passThrough);
  EXPECT_EQ(send(8, 0x00020000), passThrough);
  EXPECT_EQ(send(8, 0x00020C00), passThrough);
  EXPECT_EQ(machine.taps.send({.type = 10, .details = TapEvent::SystemDefined{8, 0x20A00, 0}}),
            passThrough);
  EXPECT_EQ(machine.taps.send({.type = 14, .details = std::nullopt}), passThrough);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(MediaKeyEventTapTest, OnlyTheBitsOfKeyAndStateCount) {
  start();
  EXPECT_EQ(send(8, 0x7ABC00020AFF), swallow);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] up"));
}

TEST_F(MediaKeyEventTapTest, OtherMediaKeysPassAndAreNamedInTheLogWhenAskedFor) {
  start();
  EXPECT_EQ(machine.taps.sendKey(volumeUp), passThrough);
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
  logKeys();
  EXPECT_EQ(machine.taps.sendKey(volumeUp), passThrough);
  EXPECT_EQ(machine.taps.sendKey(16), passThrough);
  EXPECT_EQ(machine.taps.sendKey(volumeUp, keyUp), passThrough);
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: systemDefined subtype=8 data1=0x00000A00 keyCode=0 state=0x0A "
                          "data2=-1",
                          "Brivane: tap saw media key 0 (not brightness)",
                          "Brivane: systemDefined subtype=8 data1=0x00100A00 keyCode=16 state=0x0A "
                          "data2=-1",
                          "Brivane: tap saw media key 16 (not brightness)",
                          "Brivane: systemDefined subtype=8 data1=0x00000B00 keyCode=0 state=0x0B "
                          "data2=-1"));
}

TEST_F(MediaKeyEventTapTest, BrightnessKeysAreLoggedWithTheirOutcome) {
  start();
  logKeys();
  machine.taps.sendKey(brightnessUp);
  displayTakesIt = false;
  machine.taps.sendKey(brightnessDown);
  EXPECT_THAT(
      machine.notes.take(),
      ElementsAre("[0] log Brivane: systemDefined subtype=8 data1=0x00020A00 keyCode=2 "
                  "state=0x0A data2=-1",
                  "[0] up", "[0] log Brivane: brightness UP -> HANDLED (event swallowed)",
                  "[0] log Brivane: systemDefined subtype=8 data1=0x00030A00 keyCode=3 "
                  "state=0x0A data2=-1",
                  "[0] down", "[0] log Brivane: brightness DOWN -> PASSED THROUGH to macOS"));
}

TEST_F(MediaKeyEventTapTest, TheLogSwitchIsReadForEachEvent) {
  start();
  logKeys();
  machine.taps.sendKey(volumeUp, keyUp);
  EXPECT_EQ(machine.systemLog.lines.size(), 1u);
  machine.settings.remove("VerboseKeyLog");
  machine.taps.sendKey(volumeUp);
  machine.taps.sendKey(brightnessUp);
  EXPECT_EQ(machine.systemLog.lines.size(), 1u);
}

TEST_F(MediaKeyEventTapTest, EverySystemDefinedEventIsLoggedWhenAskedFor) {
  start();
  logKeys();
  send(-3, -1, 7);
  send(7, 0x1ABCDEF0123, 0x100000002);
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: systemDefined subtype=-3 data1=0xFFFFFFFF keyCode=65535 "
                          "state=0xFF data2=7",
                          "Brivane: systemDefined subtype=7 data1=0xCDEF0123 keyCode=52719 "
                          "state=0x01 data2=2"));
}

TEST_F(MediaKeyEventTapTest, ATapThatTheSystemDisabledIsEnabledAgainAtOnce) {
  start();
  for (const auto notice : {TapEvent::disabledByTimeout, TapEvent::disabledByUserInput}) {
    machine.taps.disable(notice);
    EXPECT_TRUE(machine.taps.isEnabled());
  }
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] enable tap", "[0] enable tap"));
  EXPECT_EQ(machine.taps.sendKey(brightnessUp), swallow);
}

TEST_F(MediaKeyEventTapTest, WhoWantsToKnowHearsOfEachNoticeOnceTheTapIsEnabledAgain) {
  start();
  tap->onDisabled = [this] { machine.notes.add("disabled"); };
  machine.taps.disable(TapEvent::disabledByTimeout);
  machine.taps.disable(TapEvent::disabledByUserInput);
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] enable tap", "[0] disabled", "[0] enable tap", "[0] disabled"));
}

TEST_F(MediaKeyEventTapTest, ANoticeThatTheTapWasDisabledIsNotLogged) {
  start();
  logKeys();
  machine.taps.disable(TapEvent::disabledByTimeout);
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(MediaKeyEventTapTest, APressMayStopTheTapThatSawIt) {
  start();
  tap->onBrightnessKey = [this](BrightnessDirection) {
    tap->stop();
    return true;
  };
  EXPECT_EQ(machine.taps.sendKey(brightnessUp), swallow);
  EXPECT_FALSE(tap->isRunning());
  EXPECT_EQ(machine.taps.sendKey(brightnessUp), passThrough);
}

TEST_F(MediaKeyEventTapTest, APressMayDropTheTapThatSawItAndIsStillDecidedAndLogged) {
  start();
  logKeys();
  tap->onBrightnessKey = [this, answer = std::vector<bool>{true}](BrightnessDirection) {
    tap.reset();
    return answer.front();
  };
  EXPECT_EQ(machine.taps.sendKey(brightnessUp), swallow);
  EXPECT_FALSE(machine.taps.exists());
  EXPECT_EQ(machine.systemLog.lines.back(), "Brivane: brightness UP -> HANDLED (event swallowed)");
}

TEST_F(MediaKeyEventTapTest, WithoutACallbackEveryPressPasses) {
  start();
  logKeys();
  tap->onBrightnessKey = nullptr;
  EXPECT_EQ(machine.taps.sendKey(brightnessUp), passThrough);
  EXPECT_EQ(machine.systemLog.lines.back(), "Brivane: brightness UP -> PASSED THROUGH to macOS");
}

}  // namespace
}  // namespace brivane
