// Hotkeys, event taps and the state of the keyboard.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "Tests/ResidentConformance/ResidentUnderTest.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t keyF18 = 79;
constexpr std::uint16_t keyF19 = 80;
constexpr std::uint16_t keyLeftShift = 56;
constexpr std::uint32_t carbonShift = 512;

// Hotkeys

class HotkeysConformance : public ResidentConformance {
 protected:
  HotkeysConformance() { listen(); }

  void listen() {
    hotkeys.installHandler([this](HotkeyEvent event, HotkeyID hotkey) {
      received.push_back((event == HotkeyEvent::pressed ? "pressed " : "released ") +
                         std::to_string(hotkey.signature) + "/" + std::to_string(hotkey.id));
    });
  }

  void tap(std::uint16_t keyCode) {
    underTest->pressKey(keyCode);
    underTest->settle();
    underTest->releaseKey(keyCode);
    underTest->settle();
  }

  HotkeyReference registered(std::uint32_t keyCode, std::uint32_t modifiers, HotkeyID hotkey) {
    const auto result = hotkeys.registerHotkey(keyCode, modifiers, hotkey);
    EXPECT_TRUE(std::holds_alternative<HotkeyReference>(result));
    return std::get<HotkeyReference>(result);
  }

  Hotkeys& hotkeys = machine.hotkeys();
  std::vector<std::string> received;
};

TEST_F(HotkeysConformance, APressAndItsReleaseComeOnceEachWithTheIdentityOfTheHotkey) {
  EXPECT_NE(registered(keyF19, 0, {7, 5}), 0u);
  tap(keyF19);
  EXPECT_THAT(received, ElementsAre("pressed 7/5", "released 7/5"));
}

TEST_F(HotkeysConformance, OnlyExactlyTheModifiersOfTheHotkeyCount) {
  registered(keyF19, 0, {7, 5});
  registered(keyF19, carbonShift, {7, 7});
  underTest->pressKey(keyLeftShift);
  tap(keyF19);
  underTest->releaseKey(keyLeftShift);
  tap(keyF19);
  EXPECT_THAT(received, ElementsAre("pressed 7/7", "released 7/7", "pressed 7/5", "released 7/5"));
}

TEST_F(HotkeysConformance, ReleasingTheModifierIsAReleaseAndSoIsReleasingItsKeyLater) {
  registered(keyF19, carbonShift, {7, 7});
  underTest->pressKey(keyLeftShift);
  underTest->pressKey(keyF19);
  underTest->settle();
  underTest->releaseKey(keyLeftShift);
  underTest->settle();
  EXPECT_THAT(received, ElementsAre("pressed 7/7", "released 7/7"));
  underTest->releaseKey(keyF19);
  underTest->settle();
  EXPECT_THAT(received, ElementsAre("pressed 7/7", "released 7/7", "released 7/7"));
}

TEST_F(HotkeysConformance, TwoHotkeysHeldTogetherAreReleasedSeparately) {
  registered(keyF18, 0, {7, 5});
  registered(keyF19, 0, {7, 6});
  underTest->pressKey(keyF18);
  underTest->pressKey(keyF19);
  underTest->settle();
  underTest->releaseKey(keyF18);
  underTest->settle();
  EXPECT_THAT(received, ElementsAre("pressed 7/5", "pressed 7/6", "released 7/5"));
  underTest->releaseKey(keyF19);
  underTest->settle();
  EXPECT_THAT(received, ElementsAre("pressed 7/5", "pressed 7/6", "released 7/5", "released 7/6"));
}

TEST_F(HotkeysConformance, ACombinationBelongsToOneHotkeyAtATime) {
  const auto first = registered(keyF19, 0, {7, 5});
  const auto second = hotkeys.registerHotkey(keyF19, 0, {7, 6});
  ASSERT_TRUE(std::holds_alternative<HotkeyStatus>(second));
  EXPECT_NE(std::get<HotkeyStatus>(second), 0);
  hotkeys.unregisterHotkey(first);
  registered(keyF19, 0, {7, 6});
  tap(keyF19);
  EXPECT_THAT(received, ElementsAre("pressed 7/6", "released 7/6"));
}

TEST_F(HotkeysConformance, ACombinationThatAnotherProgramHoldsExclusivelyIsRefused) {
  underTest->occupyAlone(keyF18, carbonShift);
  EXPECT_TRUE(
      std::holds_alternative<HotkeyStatus>(hotkeys.registerHotkey(keyF18, carbonShift, {7, 1})));
  registered(keyF18, 0, {7, 2});
}

TEST_F(HotkeysConformance, AnUnregisteredHotkeyIsSilent) {
  const auto reference = registered(keyF19, 0, {7, 5});
  hotkeys.unregisterHotkey(reference);
  tap(keyF19);
  EXPECT_THAT(received, IsEmpty());
}

TEST_F(HotkeysConformance, AHotkeyUnregisteredWhileDownIsReleasedWhereTheSystemReportsIt) {
  const auto reference = registered(keyF19, 0, {7, 5});
  underTest->pressKey(keyF19);
  underTest->settle();
  hotkeys.unregisterHotkey(reference);
  underTest->releaseKey(keyF19);
  underTest->settle();
  std::vector<std::string> expected = {"pressed 7/5"};
  if (underTest->reportsUnregisteredHotkeys()) expected.emplace_back("released 7/5");
  EXPECT_EQ(received, expected);
  tap(keyF19);
  EXPECT_EQ(received, expected) << "the next press is not reported";
}

TEST_F(HotkeysConformance, AHotkeyReregisteredWhileDownIsReleasedWithItsOldIdentity) {
  const auto reference = registered(keyF19, carbonShift, {7, 5});
  underTest->pressKey(keyLeftShift);
  underTest->pressKey(keyF19);
  underTest->settle();
  hotkeys.unregisterHotkey(reference);
  registered(keyF19, carbonShift, {7, 6});
  underTest->releaseKey(keyLeftShift);
  underTest->settle();
  underTest->releaseKey(keyF19);
  underTest->settle();
  std::vector<std::string> expected = {"pressed 7/5"};
  if (underTest->reportsUnregisteredHotkeys()) {
    expected.insert(expected.end(), 2, "released 7/5");
  }
  EXPECT_EQ(received, expected);
}

TEST_F(HotkeysConformance, AHandlerMayRegisterEverythingAnewDuringAPress) {
  auto reference = registered(keyF19, 0, {7, 5});
  hotkeys.installHandler([&](HotkeyEvent event, HotkeyID hotkey) {
    received.push_back((event == HotkeyEvent::pressed ? "pressed " : "released ") +
                       std::to_string(hotkey.id));
    if (event == HotkeyEvent::released) return;
    hotkeys.unregisterHotkey(reference);
    hotkeys.removeHandler();
    listen();
    reference = registered(keyF19, 0, {7, hotkey.id + 1});
  });
  tap(keyF19);
  EXPECT_EQ(received.front(), "pressed 5");
  received.clear();
  tap(keyF19);
  EXPECT_THAT(received, ElementsAre("pressed 7/6", "released 7/6"));
}

TEST_F(HotkeysConformance, RegistrationsOutliveTheirHandler) {
  registered(keyF19, 0, {7, 5});
  hotkeys.removeHandler();
  tap(keyF19);
  EXPECT_THAT(received, IsEmpty());
  listen();
  tap(keyF19);
  EXPECT_THAT(received, ElementsAre("pressed 7/5", "released 7/5"));
}

TEST_F(HotkeysConformance, ANewHandlerReplacesTheOneBefore) {
  registered(keyF19, 0, {7, 5});
  std::vector<std::uint32_t> second;
  hotkeys.installHandler([&](HotkeyEvent, HotkeyID hotkey) { second.push_back(hotkey.id); });
  tap(keyF19);
  EXPECT_THAT(received, IsEmpty());
  EXPECT_THAT(second, ElementsAre(5u, 5u));
}

// Event taps

class EventTapConformance : public ResidentConformance {
 protected:
  std::unique_ptr<EventTap> makeTap(TapVerdict verdict) {
    return machine.eventTaps().createTap([this, verdict](const TapEvent& event) {
      events.push_back(event);
      return verdict;
    });
  }

  void tapBrightnessUp() {
    underTest->pressBrightnessUp();
    underTest->settle();
    underTest->releaseBrightnessUp();
    underTest->settle();
  }

  std::vector<TapEvent> events;
};

TEST_F(EventTapConformance, ABrightnessKeyComesAsASystemDefinedEventWithItsTypeAndState) {
  const auto tap = makeTap(TapVerdict::swallow);
  ASSERT_NE(tap, nullptr);
  tap->setEnabled(true);
  tapBrightnessUp();
  ASSERT_EQ(events.size(), 2u);
  for (const TapEvent& event : events) {
    EXPECT_EQ(event.type, TapEvent::systemDefined);
    ASSERT_TRUE(event.details.has_value());
    EXPECT_EQ(event.details->subtype, 8);
    EXPECT_EQ(event.details->data1 >> 16 & 0xFFFF, 2);
    EXPECT_EQ(event.details->data1 & 1, 0) << "no repeat";
  }
  EXPECT_EQ(events[0].details->data1 >> 8 & 0xFF, 0x0A);
  EXPECT_EQ(events[1].details->data1 >> 8 & 0xFF, 0x0B);
}

TEST_F(EventTapConformance, ATapSeesNothingAfterItIsDisabledOrDropped) {
  auto tap = makeTap(TapVerdict::passThrough);
  ASSERT_NE(tap, nullptr);
  tap->setEnabled(true);
  tap->setEnabled(false);
  tapBrightnessUp();
  tap->setEnabled(true);
  tap.reset();
  tapBrightnessUp();
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(EventTapConformance, ATapCanBeMadeAgainAfterItWasDropped) {
  makeTap(TapVerdict::swallow).reset();
  const auto tap = makeTap(TapVerdict::swallow);
  ASSERT_NE(tap, nullptr);
  tap->setEnabled(true);
  tapBrightnessUp();
  EXPECT_EQ(events.size(), 2u);
}

TEST_F(EventTapConformance, TheLatestTapComesFirstAndSwallowsEventsFromEarlierTaps) {
  const auto earlier = makeTap(TapVerdict::swallow);
  earlier->setEnabled(true);
  std::vector<std::size_t> seenBefore;
  const auto later = machine.eventTaps().createTap([&](const TapEvent&) {
    seenBefore.push_back(events.size());
    return seenBefore.size() < 2 ? TapVerdict::passThrough : TapVerdict::swallow;
  });
  later->setEnabled(true);
  tapBrightnessUp();
  EXPECT_THAT(seenBefore, ElementsAre(0u, 1u));
  EXPECT_EQ(events.size(), 1u);
}

TEST_F(EventTapConformance, ATapMayBeDestroyedWithinItsOwnHandler) {
  std::unique_ptr<EventTap> own;
  int seen = 0;
  own = machine.eventTaps().createTap([&](const TapEvent&) {
    ++seen;
    own.reset();
    return TapVerdict::swallow;
  });
  own->setEnabled(true);
  tapBrightnessUp();
  tapBrightnessUp();
  EXPECT_EQ(seen, 1);
}

// The keyboard

using KeyboardConformance = ResidentConformance;

TEST_F(KeyboardConformance, AKeyIsDownFromItsPressToItsRelease) {
  Keyboard& keyboard = machine.keyboard();
  EXPECT_FALSE(keyboard.isKeyDown(keyF19));
  underTest->pressKey(keyF19);
  underTest->settle();
  EXPECT_TRUE(keyboard.isKeyDown(keyF19));
  EXPECT_FALSE(keyboard.isKeyDown(keyF18));
  underTest->releaseKey(keyF19);
  underTest->settle();
  EXPECT_FALSE(keyboard.isKeyDown(keyF19));
}

TEST_F(KeyboardConformance, TheModifiersAreThoseThatAreHeld) {
  constexpr std::uint64_t all =
      modifierFlag::shift | modifierFlag::control | modifierFlag::option | modifierFlag::command;
  Keyboard& keyboard = machine.keyboard();
  EXPECT_EQ(keyboard.modifierFlags() & all, 0u);
  const std::vector<std::pair<std::uint16_t, std::uint64_t>> keys = {{56, modifierFlag::shift},
                                                                     {59, modifierFlag::control},
                                                                     {58, modifierFlag::option},
                                                                     {55, modifierFlag::command}};
  for (const auto& [keyCode, flag] : keys) {
    underTest->pressKey(keyCode);
    underTest->settle();
    EXPECT_EQ(keyboard.modifierFlags() & all, flag);
    underTest->releaseKey(keyCode);
    underTest->settle();
  }
  EXPECT_EQ(keyboard.modifierFlags() & all, 0u);
}

TEST_F(KeyboardConformance, KeysHaveTheCharactersOfTheLayoutAndModifiersHaveNone) {
  Keyboard& keyboard = machine.keyboard();
  EXPECT_TRUE(keyboard.hasLayout());
  EXPECT_EQ(keyboard.baseCharacter(0), "a");
  EXPECT_EQ(keyboard.baseCharacter(6), "z");
  EXPECT_EQ(keyboard.baseCharacter(29), "0");
  EXPECT_EQ(keyboard.baseCharacter(keyLeftShift), std::nullopt);
}

}  // namespace
}  // namespace brivane
