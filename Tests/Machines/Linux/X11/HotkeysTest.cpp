#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "Machines/Linux/X11/Hotkeys.h"
#include "Tests/Machines/Linux/X11/XInput.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t f18 = 79;
constexpr std::uint32_t f19 = 80;
constexpr std::uint32_t f20 = 90;
constexpr std::uint32_t shift = 512;
constexpr std::uint32_t option = 2048;

class XHotkeys : public XInputTest {
 protected:
  XHotkeys() {
    hotkeys.installHandler([this](HotkeyEvent event, HotkeyID hotkey) {
      reported.push_back((event == HotkeyEvent::pressed ? "+" : "-") + std::to_string(hotkey.id));
    });
  }

  HotkeyReference add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
    const auto result = hotkeys.registerHotkey(keyCode, modifiers, {7, id});
    const auto* const reference = std::get_if<HotkeyReference>(&result);
    EXPECT_NE(reference, nullptr);
    return reference != nullptr ? *reference : 0;
  }

  HotkeyStatus refusal(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto result = hotkeys.registerHotkey(keyCode, modifiers, {7, 99});
    const auto* const status = std::get_if<HotkeyStatus>(&result);
    return status != nullptr ? *status : 0;
  }

  /// Presses hotkeys 5 and 6 together, and releases 5.
  void holdTheSecondAlone() {
    add(f18, 0, 5);
    add(f19, 0, 6);
    rig.takeTypedKeys();
    rig.pressKey(xKey::f18);
    rig.pressKey(xKey::f19);
    settle();
    rig.releaseKey(xKey::f18);
    settle();
  }

  /// Waits until the held key has repeated so often.
  void waitForRepeats(int count = 10) {
    int repeats = 0;
    const Observation presses = events.observe([&](const xcb_generic_event_t& event) {
      if (event.response_type == XCB_KEY_PRESS) ++repeats;
    });
    EXPECT_TRUE(settleUntil([&] { return repeats >= count; }));
  }

  /// Waits until the server has handled the program's requests: the rig's requests don't queue
  /// behind those.
  void waitForServer() { keyboard.heldModifiers(); }

  LinuxHotkeys hotkeys{events, keymap, keyboard};
  std::vector<std::string> reported;
};

TEST_F(XHotkeys, WorkWithCapsLockAndNumLockInEveryState) {
  add(f19, 0, 5);
  for (const auto lock : {xKey::capsLock, xKey::numLock, xKey::capsLock, xKey::numLock}) {
    reported.clear();
    tap(lock);
    tap(xKey::f19);
    EXPECT_THAT(reported, ElementsAre("+5", "-5"));
  }
}

TEST_F(XHotkeys, ReachNoOtherProgramAndOtherKeysDo) {
  add(f19, shift, 7);
  rig.takeTypedKeys();
  rig.pressKey(xKey::shift);
  rig.takeTypedKeys();
  tap(xKey::f19);
  EXPECT_THAT(rig.takeTypedKeys(), IsEmpty());
  rig.releaseKey(xKey::shift);
  rig.takeTypedKeys();
  tap(xKey::f19);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+197", "-197"));
  EXPECT_THAT(reported, ElementsAre("+7", "-7"));
}

TEST_F(XHotkeys, AHeldKeyIsReportedOnceHoweverOftenItRepeats) {
  add(f19, 0, 5);
  rig.repeatKeysSoon();
  rig.pressKey(xKey::f19);
  waitForRepeats();
  EXPECT_THAT(reported, ElementsAre("+5"));
  rig.releaseKey(xKey::f19);
  settle();
  EXPECT_THAT(reported, ElementsAre("+5", "-5"));
}

TEST_F(XHotkeys, OfAKeyWithoutASymbolWorkToo) {
  add(f20, 0, 6);
  tap(xKey::f24);
  EXPECT_THAT(reported, ElementsAre("+6", "-6"));
}

TEST_F(XHotkeys, OneOfTwoShiftsGoingUpIsNoReleaseAndTheLastOneIs) {
  add(f19, shift, 7);
  for (const auto key : {xKey::shift, xKey::rightShift, xKey::f19}) rig.pressKey(key);
  settle();
  rig.releaseKey(xKey::shift);
  settle();
  EXPECT_THAT(reported, ElementsAre("+7"));
  rig.releaseKey(xKey::rightShift);
  settle();
  EXPECT_THAT(reported, ElementsAre("+7", "-7"));
  rig.releaseKey(xKey::f19);
  settle();
  EXPECT_THAT(reported, ElementsAre("+7", "-7", "-7"));
}

TEST_F(XHotkeys, ASecondOneHeldLongerThanTheFirstIsReleasedHoweverSoonItGoesUp) {
  add(f18, 0, 5);
  add(f19, 0, 6);
  rig.pressKey(xKey::f18);
  rig.pressKey(xKey::f19);
  rig.releaseKey(xKey::f18);
  rig.releaseKey(xKey::f19);
  settle();
  EXPECT_THAT(reported, ElementsAre("+5", "+6", "-5", "-6"));
}

TEST_F(XHotkeys, TheKeyboardIsUngrabbedAfterTheLastRelease) {
  holdTheSecondAlone();
  tap(xKey::a);
  EXPECT_THAT(rig.takeTypedKeys(), IsEmpty());
  rig.releaseKey(xKey::f19);
  settle();
  tap(xKey::a);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+38", "-38"));
}

TEST_F(XHotkeys, PressedAgainBeforeItsReleaseWasReadIsReleasedOnceMore) {
  holdTheSecondAlone();
  rig.releaseKey(xKey::f19);
  rig.pressKey(xKey::f19);
  settle();
  rig.releaseKey(xKey::f19);
  settle();
  EXPECT_THAT(reported, ElementsAre("+5", "+6", "-5", "-6", "+6", "-6"));
}

TEST_F(XHotkeys, ThatAnotherProgramHasInOneLockVariantAreRefusedWithXsErrorAndLeftToIt) {
  rig.grabKey(xKey::f19, XCB_MOD_MASK_LOCK);
  EXPECT_EQ(refusal(f19, 0), 10);
  waitForServer();
  EXPECT_FALSE(rig.isKeyTaken(xKey::f19, 0)) << "nothing of it is kept";
  EXPECT_EQ(refusal(0xFFFF, 0), 2) << "there is no such key";
}

TEST_F(XHotkeys, AreUngrabbedWhenTheyAreUnregistered) {
  const auto reference = add(f19, shift, 7);
  EXPECT_TRUE(rig.isKeyTaken(xKey::f19, XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK));
  hotkeys.unregisterHotkey(reference);
  waitForServer();
  EXPECT_FALSE(rig.isKeyTaken(xKey::f19, XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK));
}

TEST_F(XHotkeys, RegisteredAgainWhileTheKeyIsDownAreNotPressedByItsRepeats) {
  const auto reference = add(f19, 0, 5);
  rig.repeatKeysSoon();
  rig.pressKey(xKey::f19);
  settle();
  hotkeys.unregisterHotkey(reference);
  add(f19, 0, 6);
  waitForRepeats();
  EXPECT_THAT(reported, ElementsAre("+5"));
  rig.releaseKey(xKey::f19);
  settle();
  rig.repeatKeysSoon(false);
  tap(xKey::f19);
  EXPECT_THAT(reported, ElementsAre("+5", "-5", "+6", "-6"));
}

TEST_F(XHotkeys, RegisteredWhileTheCombinationIsDownAreNotPressedByItsRepeats) {
  rig.repeatKeysSoon();
  rig.pressKey(xKey::shift);
  rig.pressKey(xKey::f19);
  settle();
  add(f19, shift, 7);
  waitForRepeats();
  rig.releaseKey(xKey::f19);
  settle();
  rig.repeatKeysSoon(false);
  EXPECT_THAT(reported, IsEmpty());
  tap(xKey::f19);
  EXPECT_THAT(reported, ElementsAre("+7", "-7"));
  rig.releaseKey(xKey::shift);
  rig.takeTypedKeys();
  tap(xKey::a);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+38", "-38")) << "the keyboard is everybody's";
}

TEST_F(XHotkeys, RegisteredWhileTheKeyIsDownWithOtherModifiersTakeNothingElse) {
  rig.takeTypedKeys();
  rig.pressKey(xKey::f19);
  settle();
  add(f19, shift, 7);
  rig.takeTypedKeys();
  tap(xKey::a);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+38", "-38"));
  rig.releaseKey(xKey::f19);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("-197"));
}

TEST_F(XHotkeys, RegisteredAgainWhileTwoAreDownAreReleasedUnderTheirOldIdentifiers) {
  const auto first = add(f18, 0, 5);
  const auto second = add(f19, 0, 6);
  rig.pressKey(xKey::f18);
  rig.pressKey(xKey::f19);
  settle();
  hotkeys.unregisterHotkey(first);
  hotkeys.unregisterHotkey(second);
  add(f18, 0, 7);
  add(f19, 0, 8);
  rig.releaseKey(xKey::f18);
  settle();
  rig.releaseKey(xKey::f19);
  settle();
  EXPECT_THAT(reported, ElementsAre("+5", "+6", "-5", "-6"));
  tap(xKey::f19);
  EXPECT_THAT(reported, ElementsAre("+5", "+6", "-5", "-6", "+8", "-8"));
}

TEST_F(XHotkeys, FollowTheLayoutsModifierBits) {
  add(f19, option, 5);
  const std::string change = "xmodmap -display " + rig.display() +
                             " -e 'clear mod1' -e 'clear mod3' -e 'add mod3 = Alt_L'";
  ASSERT_EQ(std::system(change.c_str()), 0);
  settle();
  EXPECT_TRUE(rig.isKeyTaken(xKey::f19, XCB_MOD_MASK_3));
  EXPECT_FALSE(rig.isKeyTaken(xKey::f19, XCB_MOD_MASK_1));
  rig.pressKey(xKey::option);
  tap(xKey::f19);
  rig.releaseKey(xKey::option);
  EXPECT_THAT(reported, ElementsAre("+5", "-5"));
}

TEST_F(XHotkeys, HeldWhileTheLayoutChangesAreReleasedAndWorkAgain) {
  add(f19, 0, 5);
  rig.pressKey(xKey::f19);
  settle();
  rig.useEvdevKeymap("de");
  settle();
  EXPECT_THAT(reported, ElementsAre("+5"));
  rig.releaseKey(xKey::f19);
  settle();
  tap(xKey::f19);
  EXPECT_THAT(reported, ElementsAre("+5", "-5", "+5", "-5"));
}

TEST_F(XHotkeys, WorkInTheSecondLayoutOfAKeyboardToo) {
  rig.useEvdevKeymap("us,de -option grp:caps_toggle");
  add(f19, option, 5);
  EXPECT_EQ(keyboard.baseCharacter(16), "y");
  tap(xKey::capsLock);
  EXPECT_EQ(keyboard.baseCharacter(16), "z");
  rig.pressKey(xKey::option);
  tap(xKey::f19);
  rig.releaseKey(xKey::option);
  EXPECT_THAT(reported, ElementsAre("+5", "-5"));
}

TEST_F(XHotkeys, HoweverKeysRollOverEachOtherEveryHotkeyGoesUpAndTheKeyboardIsFreeAfterwards) {
  add(f18, 0, 1);
  add(f19, 0, 2);
  add(f19, shift, 3);
  add(f20, shift, 4);
  const std::array keys = {xKey::f18, xKey::f19, xKey::f24, xKey::shift, xKey::a};
  std::minstd_rand random(42);
  std::set<xcb_keycode_t> down;
  for (int step = 0; step < 400; ++step) {
    const auto key = keys.at(random() % keys.size());
    if (down.erase(key) != 0) {
      rig.releaseKey(key);
    } else {
      down.insert(key);
      rig.pressKey(key);
    }
    if (random() % 2 == 0) runFor(std::chrono::milliseconds(random() % 3));
  }
  for (const auto key : down) rig.releaseKey(key);
  settle();
  std::map<char, char> last;
  for (const std::string& report : reported) {
    EXPECT_FALSE(report[0] == '+' && last[report[1]] == '+') << "pressed twice";
    last[report[1]] = report[0];
  }
  EXPECT_EQ(last, (std::map<char, char>{{'1', '-'}, {'2', '-'}, {'3', '-'}, {'4', '-'}}));
  rig.takeTypedKeys();
  tap(xKey::a);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+38", "-38"));
}

TEST_F(XHotkeys, WithoutAServerAreRefused) {
  // A connection opened later could reach another test's server with the same display number.
  ASSERT_NE(events.connection(), nullptr);
  rig.killServer();
  EXPECT_EQ(refusal(f19, 0), 107);
  XEvents nowhere("", runtime);
  XKeymap noKeymap(nowhere);
  LinuxKeyboard noKeyboard(nowhere, noKeymap);
  LinuxHotkeys others(nowhere, noKeymap, noKeyboard);
  EXPECT_EQ(std::get<HotkeyStatus>(others.registerHotkey(f19, 0, {7, 1})), 107);
}

}  // namespace
}  // namespace brivane
