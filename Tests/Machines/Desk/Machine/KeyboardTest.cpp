// The way of a key press: HID mapping, event taps, operating system, hotkeys, whoever is left.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Desk/Hardware/KeyboardLayouts.h"
#include "Machines/Desk/Machine/Keyboard.h"
#include "Tests/Support/TestDesk.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint16_t f1 = 122;
constexpr std::uint16_t f19 = 80;
constexpr std::uint16_t f20 = 90;
constexpr std::uint16_t leftShift = 56;
constexpr std::uint16_t rightShift = 60;
constexpr std::uint16_t leftControl = 59;
constexpr std::uint16_t leftOption = 58;
constexpr std::uint16_t leftCommand = 55;

constexpr auto deskWithKeys = R"({
  "displays": [{"identifier": 1, "builtIn": true}, {"identifier": 2}],
  "applications": [{"bundleIdentifier": "org.example.other",
                    "hotkeys": [{"keyCode": 126, "modifiers": 6144}]}]})";

class DeskKeyboardTest : public testing::Test {
 protected:
  DeskKeyboardTest() {
    keyboard.onUnclaimedKey = [this](const UnclaimedKey& key) { unclaimed.push_back(key); };
    desk.machine->hotkeys().installHandler([this](HotkeyEvent event, HotkeyID hotkey) {
      events.push_back((event == HotkeyEvent::pressed ? "pressed " : "released ") +
                       std::to_string(hotkey.id));
    });
  }

  void map(HIDUsage source, HIDUsage destination) {
    desk.hardware->system.setHIDMapping({{source, destination}});
  }

  std::unique_ptr<EventTap> enabledTap(TapVerdict verdict) {
    auto tap = desk.machine->eventTaps().createTap([this, verdict](const TapEvent& event) {
      seen.push_back(event.type == TapEvent::systemDefined ? event.details->data1 : -1);
      return verdict;
    });
    tap->setEnabled(true);
    return tap;
  }

  std::unique_ptr<EventTap> newTap() {
    return desk.machine->eventTaps().createTap(
        [](const TapEvent&) { return TapVerdict::passThrough; });
  }

  std::variant<HotkeyReference, HotkeyStatus> registerHotkey(std::uint32_t keyCode,
                                                             std::uint32_t modifiers,
                                                             std::uint32_t id) {
    return desk.machine->hotkeys().registerHotkey(keyCode, modifiers, {7, id});
  }

  float panelLevel() { return *desk.hardware->panels.level(1); }

  TestDesk desk{deskWithKeys};
  DeskKeyboard& keyboard = desk.machine->keyboard();
  std::vector<UnclaimedKey> unclaimed;
  std::vector<std::string> events;
  /// The data of special keys' events; -1 for other events.
  std::vector<std::int64_t> seen;
};

// Brightness keys

TEST_F(DeskKeyboardTest, AnUnconsumedBrightnessKeyMovesTheBuiltInPanelBySixteenths) {
  keyboard.pressBrightness(BrightnessKey::up);
  keyboard.releaseBrightness(BrightnessKey::up);
  EXPECT_FLOAT_EQ(panelLevel(), 0.5625F);
  keyboard.pressBrightness(BrightnessKey::down);
  keyboard.releaseBrightness(BrightnessKey::down);
  keyboard.pressBrightness(BrightnessKey::down);
  EXPECT_FLOAT_EQ(panelLevel(), 0.4375F);
}

TEST_F(DeskKeyboardTest, TheSystemStopsAtBothEndsOfThePanel) {
  for (int i = 0; i < 20; ++i) {
    keyboard.pressBrightness(BrightnessKey::up);
    keyboard.releaseBrightness(BrightnessKey::up);
  }
  EXPECT_EQ(panelLevel(), 1);
}

TEST_F(DeskKeyboardTest, ATapSeesTypeTwoForUpThreeForDownAndBothStates) {
  const auto tap = enabledTap(TapVerdict::passThrough);
  keyboard.pressBrightness(BrightnessKey::up);
  keyboard.releaseBrightness(BrightnessKey::up);
  keyboard.pressBrightness(BrightnessKey::down);
  keyboard.releaseBrightness(BrightnessKey::down);
  EXPECT_THAT(seen, ElementsAre(0x20A00, 0x20B00, 0x30A00, 0x30B00));
  EXPECT_FLOAT_EQ(panelLevel(), 0.5F) << "what passes reaches the system: up and down";
}

TEST_F(DeskKeyboardTest, ASwallowedPressDoesNotReachTheSystem) {
  const auto tap = enabledTap(TapVerdict::swallow);
  keyboard.pressBrightness(BrightnessKey::up);
  EXPECT_FLOAT_EQ(panelLevel(), 0.5F);
}

TEST_F(DeskKeyboardTest, ATapThatIsNotEnabledOrWasDroppedSeesNothing) {
  auto tap = enabledTap(TapVerdict::swallow);
  tap->setEnabled(false);
  keyboard.pressBrightness(BrightnessKey::up);
  tap->setEnabled(true);
  tap.reset();
  keyboard.releaseBrightness(BrightnessKey::up);
  EXPECT_THAT(seen, IsEmpty());
  EXPECT_FLOAT_EQ(panelLevel(), 0.5625F);
}

TEST_F(DeskKeyboardTest, AHeldBrightnessKeyRepeatsWithTheRepeatBitUntilItIsReleased) {
  const auto tap = enabledTap(TapVerdict::swallow);
  keyboard.pressBrightness(BrightnessKey::up);
  desk.time().runFor(std::chrono::milliseconds(499));
  EXPECT_THAT(seen, ElementsAre(0x20A00));
  desk.time().runFor(std::chrono::milliseconds(1));
  EXPECT_THAT(seen, ElementsAre(0x20A00, 0x20A01));
  desk.time().runFor(std::chrono::milliseconds(249));
  EXPECT_THAT(seen, SizeIs(4)) << "a twelfth of a second apart, and not quite three of them";
  keyboard.releaseBrightness(BrightnessKey::up);
  desk.time().runFor(std::chrono::seconds(5));
  EXPECT_THAT(seen, ElementsAre(0x20A00, 0x20A01, 0x20A01, 0x20A01, 0x20B00));
  EXPECT_EQ(desk.time().timerCount(), 0u);
}

TEST_F(DeskKeyboardTest, TheDeskFileSaysHowFastKeysRepeat) {
  TestDesk fast(
      R"({"displays": [{"identifier": 1, "builtIn": true, "displayServices": {"level": 0}}],
                    "keyboard": {"repeatDelaySeconds": 0.2, "repeatPeriodSeconds": 0.1}})");
  fast.machine->keyboard().pressBrightness(BrightnessKey::up);
  fast.time().runFor(std::chrono::milliseconds(400));
  EXPECT_FLOAT_EQ(*fast.hardware->panels.level(1), 4.0F / 16);
}

TEST_F(DeskKeyboardTest, ATapThatTookTooLongIsNotifiedAndDisabledUntilItIsEnabledAgain) {
  const auto tap = enabledTap(TapVerdict::passThrough);
  keyboard.pressBrightness(BrightnessKey::up);
  desk.hardware->input.taps.disableByTimeout();
  keyboard.releaseBrightness(BrightnessKey::up);
  EXPECT_THAT(seen, ElementsAre(0x20A00, -1));
  tap->setEnabled(true);
  keyboard.pressBrightness(BrightnessKey::up);
  EXPECT_THAT(seen, ElementsAre(0x20A00, -1, 0x20A00));
}

TEST_F(DeskKeyboardTest, WithoutTheGrantThereIsNoTapAndOneThatWasMadeSeesNothing) {
  const auto tap = enabledTap(TapVerdict::swallow);
  desk.hardware->system.setAccessibilityGranted(false);
  keyboard.pressBrightness(BrightnessKey::up);
  EXPECT_THAT(seen, IsEmpty());
  EXPECT_EQ(newTap(), nullptr);
  desk.hardware->system.setAccessibilityGranted(true);
  EXPECT_NE(newTap(), nullptr);
}

TEST_F(DeskKeyboardTest, TheTapMadeLastSeesAPressFirst) {
  const auto first = enabledTap(TapVerdict::passThrough);
  const auto second = enabledTap(TapVerdict::swallow);
  keyboard.pressBrightness(BrightnessKey::up);
  EXPECT_THAT(seen, SizeIs(1));
}

TEST_F(DeskKeyboardTest, ATapThatAnEarlierOneDropsSeesNothingOfTheSameEvent) {
  auto dropped = enabledTap(TapVerdict::swallow);
  const auto earlier = desk.machine->eventTaps().createTap([&](const TapEvent&) {
    dropped.reset();
    return TapVerdict::passThrough;
  });
  earlier->setEnabled(true);
  keyboard.pressBrightness(BrightnessKey::up);
  EXPECT_THAT(seen, IsEmpty());
  EXPECT_FLOAT_EQ(panelLevel(), 0.5625F);
}

// The HID mapping

class BrightnessUsagesTest
    : public testing::TestWithParam<std::tuple<const char*, HIDUsage, HIDUsage>> {};

TEST_P(BrightnessUsagesTest, ARelayedBrightnessKeyArrivesAsAFunctionKeyAndNotAtTheTaps) {
  const auto& [kind, up, down] = GetParam();
  TestDesk desk(R"({"displays": [{"identifier": 1, "builtIn": true}],
                    "keyboard": {"brightnessUsages": ")" +
                std::string(kind) + "\"}}");
  desk.hardware->system.setHIDMapping({{up, 0x70000006E}, {down, 0x70000006F}});
  std::vector<std::uint16_t> arrived;
  auto& keyboard = desk.machine->keyboard();
  keyboard.onUnclaimedKey = [&](const UnclaimedKey& key) { arrived.push_back(key.keyCode); };
  int seen = 0;
  const auto tap = desk.machine->eventTaps().createTap([&](const TapEvent&) {
    ++seen;
    return TapVerdict::swallow;
  });
  tap->setEnabled(true);
  keyboard.pressBrightness(BrightnessKey::up);
  EXPECT_TRUE(keyboard.isKeyDown(f19));
  keyboard.releaseBrightness(BrightnessKey::up);
  EXPECT_FALSE(keyboard.isKeyDown(f19));
  keyboard.pressBrightness(BrightnessKey::down);
  desk.time().runFor(std::chrono::seconds(3));
  EXPECT_THAT(arrived, ElementsAre(f19, f20));
  EXPECT_EQ(seen, 0);
  EXPECT_FLOAT_EQ(*desk.hardware->panels.level(1), 0.5F);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, BrightnessUsagesTest,
    testing::Values(std::tuple{"consumer", HIDUsage{51539607663}, HIDUsage{51539607664}},
                    std::tuple{"topCase", HIDUsage{1095216660484}, HIDUsage{1095216660485}},
                    std::tuple{"vendor", HIDUsage{280379760050208}, HIDUsage{280379760050209}}));

TEST_F(DeskKeyboardTest, AnOrdinaryKeyCanBeMappedToABrightnessKey) {
  map(0x70000003A, 51539607664);
  keyboard.pressKey(f1);
  EXPECT_FLOAT_EQ(panelLevel(), 0.4375F);
  EXPECT_FALSE(keyboard.isKeyDown(f1));
  EXPECT_THAT(unclaimed, IsEmpty());
}

TEST_F(DeskKeyboardTest, AMappingIsNotAppliedToItsOwnResult) {
  desk.hardware->system.setHIDMapping({{0x700000004, 0x700000005}, {0x700000005, 0x700000006}});
  keyboard.pressKey(0);
  EXPECT_THAT(unclaimed, ElementsAre(UnclaimedKey{11, 0}));
}

TEST_F(DeskKeyboardTest, AMappingThatChangesWhileAKeyIsDownLeavesItsReleaseAsItWas) {
  registerHotkey(f19, 0, 5);
  map(51539607663, 0x70000006E);
  keyboard.pressBrightness(BrightnessKey::up);
  desk.hardware->system.setHIDMapping({});
  keyboard.releaseBrightness(BrightnessKey::up);
  EXPECT_THAT(events, ElementsAre("pressed 5", "released 5"));
}

TEST_F(DeskKeyboardTest, TwoKeysMappedToOneAreUpWhenBothAreReleased) {
  registerHotkey(f19, 0, 5);
  map(51539607663, 0x70000006E);
  keyboard.pressKey(f19);
  keyboard.pressBrightness(BrightnessKey::up);
  keyboard.releaseKey(f19);
  EXPECT_TRUE(keyboard.isKeyDown(f19));
  EXPECT_THAT(events, ElementsAre("pressed 5"));
  keyboard.releaseBrightness(BrightnessKey::up);
  EXPECT_FALSE(keyboard.isKeyDown(f19));
  EXPECT_THAT(events, ElementsAre("pressed 5", "released 5"));
}

// Hotkeys

TEST_F(DeskKeyboardTest, AHotkeyIsPressedAndReleasedOnceHoweverLongItIsHeld) {
  registerHotkey(upArrow, 4096, 1);
  keyboard.pressKey(leftControl);
  keyboard.pressKey(upArrow);
  desk.time().runFor(std::chrono::seconds(5));
  keyboard.releaseKey(upArrow);
  keyboard.releaseKey(leftControl);
  EXPECT_THAT(events, ElementsAre("pressed 1", "released 1"));
  EXPECT_THAT(unclaimed, IsEmpty());
}

TEST_F(DeskKeyboardTest, ReleasingAModifierReleasesTheHotkeyAndItsKeyDoesSoAgain) {
  registerHotkey(f19, 512, 7);
  keyboard.pressKey(leftShift);
  keyboard.pressKey(f19);
  keyboard.releaseKey(leftShift);
  EXPECT_THAT(events, ElementsAre("pressed 7", "released 7"));
  EXPECT_TRUE(keyboard.isKeyDown(f19));
  keyboard.pressKey(leftShift);
  keyboard.releaseKey(leftShift);
  EXPECT_THAT(events, SizeIs(2)) << "once for the modifiers";
  keyboard.releaseKey(f19);
  EXPECT_THAT(events, ElementsAre("pressed 7", "released 7", "released 7"));
  keyboard.pressKey(f19);
  keyboard.releaseKey(f19);
  EXPECT_THAT(events, SizeIs(3));
}

TEST_F(DeskKeyboardTest, AModifierThatComesLaterChangesNothing) {
  registerHotkey(f19, 0, 5);
  registerHotkey(f19, 512, 7);
  keyboard.pressKey(f19);
  keyboard.pressKey(leftShift);
  EXPECT_THAT(events, ElementsAre("pressed 5"));
  EXPECT_EQ(keyboard.modifierFlags(), modifierFlag::shift);
}

TEST_F(DeskKeyboardTest, OneOfTwoShiftKeysIsEnoughToHoldAHotkey) {
  registerHotkey(f19, 512, 7);
  keyboard.pressKey(leftShift);
  keyboard.pressKey(rightShift);
  keyboard.pressKey(f19);
  keyboard.releaseKey(leftShift);
  EXPECT_THAT(events, ElementsAre("pressed 7"));
  keyboard.releaseKey(rightShift);
  EXPECT_THAT(events, ElementsAre("pressed 7", "released 7"));
}

TEST_F(DeskKeyboardTest, ACombinationOfAnotherApplicationIsRefusedAndNotDelivered) {
  const auto result = registerHotkey(upArrow, 6144, 1);
  EXPECT_EQ(std::get<HotkeyStatus>(result), -9878);
  keyboard.pressKey(leftControl);
  keyboard.pressKey(leftOption);
  keyboard.pressKey(upArrow);
  EXPECT_THAT(events, IsEmpty());
  EXPECT_THAT(unclaimed, IsEmpty());
}

TEST_F(DeskKeyboardTest, TheFirstProgramWithACombinationKeepsItUntilItEnds) {
  auto other = desk.makeMachine();
  ASSERT_TRUE(std::holds_alternative<HotkeyReference>(other->hotkeys().registerHotkey(f19, 0, {})));
  EXPECT_TRUE(std::holds_alternative<HotkeyStatus>(registerHotkey(f19, 0, 5)));
  other->kill();
  EXPECT_TRUE(std::holds_alternative<HotkeyReference>(registerHotkey(f19, 0, 5)));
}

TEST_F(DeskKeyboardTest, AHotkeyMayUnregisterItselfFromItsHandler) {
  Hotkeys& hotkeys = desk.machine->hotkeys();
  const auto reference = std::get<HotkeyReference>(registerHotkey(f19, 0, 5));
  int calls = 0;
  hotkeys.installHandler([&](HotkeyEvent, HotkeyID) {
    ++calls;
    hotkeys.unregisterHotkey(reference);
    hotkeys.removeHandler();
  });
  keyboard.pressKey(f19);
  keyboard.releaseKey(f19);
  keyboard.pressKey(f19);
  EXPECT_EQ(calls, 1);
  EXPECT_THAT(unclaimed, SizeIs(1));
}

TEST_F(DeskKeyboardTest, AHotkeyThatIsUnregisteredWhileItIsHeldEndsWithItsProgram) {
  auto other = desk.makeMachine();
  int calls = 0;
  other->hotkeys().installHandler([&](HotkeyEvent, HotkeyID) { ++calls; });
  const auto registered = other->hotkeys().registerHotkey(f19, 0, {1, 5});
  keyboard.pressKey(f19);
  other->hotkeys().unregisterHotkey(std::get<HotkeyReference>(registered));
  other->kill();
  keyboard.releaseKey(f19);
  EXPECT_EQ(calls, 1);
}

TEST_F(DeskKeyboardTest, AHotkeyIsUnregisteredOnceUnlessItsProgramHasEnded) {
  Hotkeys& hotkeys = desk.machine->hotkeys();
  const auto reference = std::get<HotkeyReference>(registerHotkey(f19, 0, 5));
  hotkeys.unregisterHotkey(reference);
  EXPECT_DEATH(hotkeys.unregisterHotkey(reference), "unregistered that isn't registered");
  const auto another = std::get<HotkeyReference>(registerHotkey(f19, 0, 5));
  desk.machine->kill();
  hotkeys.unregisterHotkey(another);
}

// What is left

TEST_F(DeskKeyboardTest, AKeyThatIsNoHotkeyIsUnclaimedWithItsModifiers) {
  keyboard.pressKey(leftCommand);
  keyboard.pressKey(13);
  EXPECT_THAT(unclaimed, ElementsAre(UnclaimedKey{13, modifierFlag::command}));
}

TEST_F(DeskKeyboardTest, AKeyThatIsDownIsNotPressedAgainAndOneThatIsUpIsNotReleased) {
  keyboard.pressKey(0);
  keyboard.pressKey(0);
  EXPECT_THAT(unclaimed, SizeIs(1));
  keyboard.releaseKey(1);
  EXPECT_TRUE(keyboard.isKeyDown(0));
  EXPECT_FALSE(keyboard.isKeyDown(1));
}

TEST_F(DeskKeyboardTest, ModifiersAreWhatIsHeld) {
  for (const auto key : {leftShift, leftControl, leftOption, leftCommand}) keyboard.pressKey(key);
  EXPECT_EQ(keyboard.modifierFlags(), modifierFlag::shift | modifierFlag::control |
                                          modifierFlag::option | modifierFlag::command);
  keyboard.releaseKey(leftControl);
  EXPECT_EQ(keyboard.modifierFlags(),
            modifierFlag::shift | modifierFlag::option | modifierFlag::command);
}

TEST_F(DeskKeyboardTest, EveryOrdinaryKeyHasOneUsageAndTheWayBackLeadsToIt) {
  int keys = 0;
  for (std::uint16_t keyCode = 0; keyCode < 128; ++keyCode) {
    const auto usage = usageOfKey(keyCode);
    if (!usage) continue;
    ++keys;
    EXPECT_EQ(keyOfUsage(*usage), keyCode);
  }
  EXPECT_EQ(keys, 110);
  EXPECT_EQ(usageOfKey(200), std::nullopt);
}

// Layouts

std::string characters(KeyboardLayout layout, const std::vector<std::uint16_t>& keys) {
  std::string text;
  for (const auto key : keys) text += characterOfKey(layout, key).value_or("?");
  return text;
}

TEST(KeyboardLayouts, SayWhatTheirKeysPrint) {
  const std::vector<std::uint16_t> upper = {12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30};
  const std::vector<std::uint16_t> middle = {0, 1, 2, 3, 5, 4, 38, 40, 37, 41, 39};
  const std::vector<std::uint16_t> lower = {6, 7, 8, 9, 11, 45, 46, 43, 47, 44};
  const std::vector<std::uint16_t> digits = {18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24};
  EXPECT_EQ(characters(KeyboardLayout::us, upper), "qwertyuiop[]");
  EXPECT_EQ(characters(KeyboardLayout::us, middle), "asdfghjkl;'");
  EXPECT_EQ(characters(KeyboardLayout::us, lower), "zxcvbnm,./");
  EXPECT_EQ(characters(KeyboardLayout::us, digits), "1234567890-=");
  EXPECT_EQ(characters(KeyboardLayout::german, upper), "qwertzuiopü+");
  EXPECT_EQ(characters(KeyboardLayout::german, middle), "asdfghjklöä");
  EXPECT_EQ(characters(KeyboardLayout::german, lower), "yxcvbnm,.-");
  EXPECT_EQ(characters(KeyboardLayout::german, digits), "1234567890ß´");
  EXPECT_EQ(characters(KeyboardLayout::french, upper), "azertyuiop^$");
  EXPECT_EQ(characters(KeyboardLayout::french, middle), "qsdfghjklmù");
  EXPECT_EQ(characters(KeyboardLayout::french, lower), "wxcvbn,;:=");
  EXPECT_EQ(characters(KeyboardLayout::french, digits), "&é\"'(§è!çà)-");
}

TEST(KeyboardLayouts, ShareSpaceKeypadAndControlCharacters) {
  for (const auto layout : {KeyboardLayout::us, KeyboardLayout::german, KeyboardLayout::french}) {
    EXPECT_EQ(characters(layout, {49, 36, 82, 92, f1}), " \r09\x10");
    EXPECT_EQ(characterOfKey(layout, leftShift), std::nullopt);
    EXPECT_EQ(characterOfKey(layout, 200), std::nullopt);
  }
}

TEST(KeyboardLayouts, WithoutALayoutNoKeyGivesAnything) {
  EXPECT_TRUE(TestDesk(R"({"keyboard": {"layout": "us"}})").machine->keyboard().hasLayout());
  EXPECT_FALSE(TestDesk(R"({"keyboard": {"layout": "none"}})").machine->keyboard().hasLayout());
  EXPECT_EQ(characterOfKey(KeyboardLayout::none, 0), std::nullopt);
  EXPECT_EQ(TestDesk(R"({"keyboard": {"layout": "none"}})").machine->keyboard().baseCharacter(0),
            std::nullopt);
  EXPECT_EQ(TestDesk(R"({"keyboard": {"layout": "german"}})").machine->keyboard().baseCharacter(6),
            "y");
}

}  // namespace
}  // namespace brivane
