#include <gmock/gmock.h>

#include <map>
#include <optional>
#include <string>

#include "Tests/Machines/Linux/X11/XInput.h"

namespace brivane {
namespace {

using KeyboardOnX11 = XInputTest;

TEST_F(KeyboardOnX11, KeysGiveWhatTheLayoutPrintsFromTheMomentItChanges) {
  EXPECT_EQ(keyboard.baseCharacter(16), "y");
  rig.useEvdevKeymap("de");
  settle();
  EXPECT_EQ(keyboard.baseCharacter(16), "z");
  EXPECT_EQ(keyboard.baseCharacter(41), "ö");
  rig.useEvdevKeymap("fr");
  settle();
  EXPECT_EQ(keyboard.baseCharacter(0), "q");
}

TEST_F(KeyboardOnX11, DeadKeysGiveTheirAccentTheKeypadItsDigitsAndArrowsNothing) {
  rig.useEvdevKeymap("de");
  EXPECT_EQ(keyboard.baseCharacter(24), "´");
  EXPECT_EQ(keyboard.baseCharacter(50), "^");
  EXPECT_EQ(keyboard.baseCharacter(83), "1");
  EXPECT_EQ(keyboard.baseCharacter(126), std::nullopt);
  EXPECT_EQ(keyboard.baseCharacter(0x7FFF), std::nullopt);
}

TEST_F(KeyboardOnX11, ModifiersAreWhereTheLayoutPutsThem) {
  EXPECT_EQ(keymap.modifiers(), XModifiers());
  ASSERT_EQ(std::system(("setxkbmap -display " + rig.display() +
                         " -rules evdev -model pc105 -layout us -option altwin:swap_alt_win")
                            .c_str()),
            0);
  settle();
  rig.pressKey(64);  // the key that says Alt, and is Super now
  EXPECT_EQ(keyboard.modifierFlags(), modifierFlag::command);
  rig.releaseKey(64);
}

TEST_F(KeyboardOnX11, LocksAreNoModifiers) {
  tap(xKey::capsLock);
  tap(xKey::numLock);
  EXPECT_EQ(keyboard.modifierFlags(), 0u);
}

TEST_F(KeyboardOnX11, AServerMayBeLostWhileItsEventsAreDelivered) {
  const auto earlier = events.observe([this](const xcb_generic_event_t&) {
    rig.killServer();
    keyboard.modifierFlags();
  });
  EXPECT_TRUE(keyboard.hasLayout());
  rig.useEvdevKeymap("de");
  settle();
  EXPECT_FALSE(keyboard.hasLayout());
}

TEST_F(KeyboardOnX11, KeysGiveTheirBaseCharacterWhateverIsHeldOrLocked) {
  tap(xKey::capsLock);
  rig.pressKey(xKey::shift);
  EXPECT_EQ(keyboard.baseCharacter(0), "a");
  EXPECT_EQ(keyboard.baseCharacter(29), "0");
  rig.releaseKey(xKey::shift);
}

TEST_F(KeyboardOnX11, WithoutAServerThereIsNoLayoutAndNoKeyIsDown) {
  EXPECT_TRUE(keyboard.hasLayout());
  rig.killServer();
  EXPECT_EQ(keyboard.baseCharacter(0), std::nullopt);
  EXPECT_EQ(keyboard.modifierFlags(), 0u);
  EXPECT_FALSE(keyboard.isKeyDown(0));
  EXPECT_FALSE(keyboard.hasLayout());
}

}  // namespace
}  // namespace brivane
