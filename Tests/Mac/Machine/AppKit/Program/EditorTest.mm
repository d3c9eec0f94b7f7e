#include <algorithm>

#include "Tests/Mac/Machine/AppKit/Program/MacWholeProgram.h"

namespace brivane {
namespace {

constexpr std::uint16_t letterA = 0;
constexpr std::uint16_t keyQ = 12;
constexpr std::uint16_t keyW = 13;
constexpr std::uint32_t control = 0x1000;
constexpr std::uint32_t command = 0x100;

TEST_F(MacWholeProgram, TheEditorIsOneWindowThatBeepsAndCanBeLeft) {
  NSWindow* __weak first = nil;
  const auto beeps = [this] {
    const auto notes = desktop.takeNotes();
    return std::count(notes.begin(), notes.end(), "beep");
  };
  waitUntil([this] { return hasSlider("Right"); });
  then(0, [this] { chooseFromTheMenu("Change Hotkeys…"); });
  waitUntil([this] { return editor() != nil; });
  then(0, [this, &first, beeps] {
    first = editor();
    ASSERT_NE(first, nil);
    clickTheFirstField();
    beeps();
    desktop.press(editor(), letterA, 0);
    EXPECT_EQ(beeps(), 1) << "a letter alone is no hotkey";
    EXPECT_FALSE(hasItsHotkey()) << "it can be captured, too";
    desktop.press(editor(), keyEscape, 0);
    EXPECT_TRUE(hasItsHotkey());
    desktop.press(editor(), keyF5, NSEventModifierFlagControl);
    EXPECT_FALSE(settings().contains("BrightnessUpKeyCode")) << "escape ends the capturing";
    clickTheFirstField();
    desktop.press(editor(), keyQ, NSEventModifierFlagCommand);
    EXPECT_TRUE(isTaken(keyQ, command)) << "and the program goes on";
    clickTheFirstField();
    desktop.press(editor(), keyF5, NSEventModifierFlagControl);
    EXPECT_TRUE(isTaken(keyF5, control));
    desktop.press(editor(), keyW, NSEventModifierFlagCommand);
    EXPECT_FALSE(editor().visible);
  });
  waitUntil([this] { return !desktop.isActive; });
  then(0.1, [this] { chooseFromTheMenu("Change Hotkeys…"); });
  waitUntil([this] { return editor().visible; });
  then(0, [this, &first] {
    EXPECT_EQ(editor(), first);
    EXPECT_FALSE(hasItsHotkey());
    for (NSView* const& view : viewsBelow(editor().contentView)) {
      if ([view isKindOfClass:[NSButton class]]) desktop.press(static_cast<NSButton*>(view));
    }
    EXPECT_TRUE(hasItsHotkey());
    EXPECT_FALSE(isTaken(keyF5, control));
    EXPECT_FALSE(settings().contains("BrightnessUpKeyCode"));
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

}  // namespace
}  // namespace brivane
