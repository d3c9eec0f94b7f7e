#include <gtest/gtest.h>

#include "BrivaneCore/Seams/Keyboard.h"
#include "Machines/Linux/X11/XModifiers.h"

namespace brivane {
namespace {

TEST(XModifiers, AreShiftControlAndTheBitsThatTheLayoutGivesTheOthers) {
  constexpr XModifiers usual;
  EXPECT_EQ(xModifiers(usual, 512 | 4096), XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL);
  EXPECT_EQ(xModifiers(usual, 2048 | 256), XCB_MOD_MASK_1 | XCB_MOD_MASK_4);
  constexpr XModifiers swapped{XCB_MOD_MASK_4, XCB_MOD_MASK_1, XCB_MOD_MASK_2};
  EXPECT_EQ(xModifiers(swapped, 2048), XCB_MOD_MASK_4);
  EXPECT_EQ(hotkeyModifiers(swapped, XCB_MOD_MASK_1), 256U);
}

TEST(XModifiers, LeaveLocksAndUnknownBitsOut) {
  constexpr XModifiers usual;
  EXPECT_EQ(hotkeyModifiers(usual, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 | XCB_MOD_MASK_SHIFT), 512U);
  EXPECT_EQ(xModifiers(usual, 0xFFFF'0001), 0);
}

TEST(XModifiers, BecomeTheFlagsOfKeyEvents) {
  EXPECT_EQ(modifierFlagsOf(256), modifierFlag::command);
  EXPECT_EQ(modifierFlagsOf(512), modifierFlag::shift);
  EXPECT_EQ(modifierFlagsOf(2048), modifierFlag::option);
  EXPECT_EQ(modifierFlagsOf(4096), modifierFlag::control);
  EXPECT_EQ(modifierFlagsOf(0), 0U);
}

}  // namespace
}  // namespace brivane
