#include <gtest/gtest.h>

#include <ostream>

#include "Machines/Qt/LiveDesk/DeskKeys.h"

namespace brivane {
namespace {

constexpr std::uint16_t none = 0xFFFF;

struct Case {
  const char* what;
  int key;
  std::uint32_t xKeyCode;
  Qt::KeyboardModifiers modifiers;
  std::uint16_t expected;
};

void PrintTo(const Case& one, std::ostream* out) {
  *out << one.what;
}

class DeskKeysTest : public testing::TestWithParam<Case> {};

TEST_P(DeskKeysTest, IsTheKeyAtThatPlaceOfAMacsKeyboard) {
  const Case& one = GetParam();
  const auto key =
      deskKeyOf(QKeyEvent(QEvent::KeyPress, one.key, one.modifiers, one.xKeyCode, 0, 0));
  if (one.expected == none) {
    EXPECT_FALSE(key.has_value());
  } else {
    ASSERT_TRUE(key.has_value());
    EXPECT_EQ(std::get<std::uint16_t>(*key), one.expected);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Each, DeskKeysTest,
    testing::Values(Case{"a letter, whatever the layout makes of it", Qt::Key_Q, 38, {}, 0},
                    Case{"up on a PC's keyboard", Qt::Key_Up, 111, {}, 126},
                    Case{"up where the server counts keys another way", Qt::Key_Up, 98, {}, 126},
                    Case{"up on the keypad", Qt::Key_Up, 80, Qt::KeypadModifier, 91},
                    Case{"the right Control", Qt::Key_Control, 105, {}, 62},
                    Case{"a Control that nobody numbers", Qt::Key_Control, 0, {}, 59},
                    Case{"Alt with Shift down", Qt::Key_Meta, 64, Qt::ShiftModifier, 58},
                    Case{"the Super key", Qt::Key_Super_L, 133, {}, 55},
                    Case{"F20's stand-in", 0, 202, {}, 90},
                    Case{"a key that no such keyboard has", Qt::Key_unknown, 240, {}, none},
                    Case{"one without a number", Qt::Key_unknown, 0, {}, none}));

TEST(DeskKeys, BrightnessKeysAreRecognised) {
  const auto up = deskKeyOf(QKeyEvent(QEvent::KeyPress, Qt::Key_MonBrightnessUp, {}, 233, 0, 0));
  ASSERT_TRUE(up.has_value());
  EXPECT_EQ(std::get<LiveBrightnessKey>(*up), LiveBrightnessKey::up);
  const auto down = deskKeyOf(QKeyEvent(QEvent::KeyPress, Qt::Key_MonBrightnessDown, {}, 0, 0, 0));
  ASSERT_TRUE(down.has_value());
  EXPECT_EQ(std::get<LiveBrightnessKey>(*down), LiveBrightnessKey::down);
}

}  // namespace
}  // namespace brivane
