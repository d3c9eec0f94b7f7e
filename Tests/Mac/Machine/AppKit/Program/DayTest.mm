#include <gmock/gmock.h>

#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/AppKit/Program/MacWholeProgram.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr std::uint16_t optionKey = 58;
constexpr std::uint16_t controlKey = 59;

/// The one window without a title.
NSWindow* hud() {
  for (NSWindow* const window : FakeDesktop::shared().windows) {
    if (window != nil && window.title == nil) return window;
  }
  return nil;
}

void expectAHUDOverEverythingThatTakesNothing() {
  EXPECT_THAT(FakeDesktop::shared().notes, Contains("window, style 0, backing 2"));
  EXPECT_EQ([hud() fakeStyleMask], 0U);
  EXPECT_EQ(hud().level, 25);
  EXPECT_EQ(hud().collectionBehavior, 337U);
  EXPECT_EQ(hud().animationBehavior, 2);
  EXPECT_EQ(hud().contentView.autoresizingMask, 18U);
  EXPECT_EQ(hud().contentView.frame.size.width, 360);
  EXPECT_EQ(hud().contentView.frame.size.height, 54);
  EXPECT_EQ(textOfColor(hud().backgroundColor), "clear*0");
  EXPECT_FALSE(hud().opaque);
  EXPECT_TRUE(hud().hasShadow);
  EXPECT_TRUE(hud().ignoresMouseEvents);
  EXPECT_FALSE(hud().releasedWhenClosed);
  EXPECT_FALSE(hud().hidesOnDeactivate);
  EXPECT_FALSE(hud().canHide);
  EXPECT_FALSE(hud().canBecomeKeyWindow);
  EXPECT_FALSE(hud().canBecomeMainWindow);
}

void expectATitledEditorInFullSize(NSWindow* editor) {
  EXPECT_THAT(FakeDesktop::shared().notes, Contains("window, style 3, backing 2"));
  EXPECT_EQ([editor fakeStyleMask], 3U);
  EXPECT_EQ(editor.contentView.frame.size.width, 420);
  EXPECT_EQ(editor.contentView.frame.size.height, 210);
  EXPECT_FALSE(editor.releasedWhenClosed);
  EXPECT_TRUE([editor fakeIsCentered]);
  EXPECT_TRUE([editor fakeIsKey]);
  std::vector<std::string> fonts;
  for (NSView* const& view : viewsBelow(editor.contentView)) {
    if (![view isKindOfClass:[NSTextField class]]) continue;
    fonts.push_back(textOfFont(static_cast<NSTextField*>(view).font));
  }
  EXPECT_THAT(fonts, ElementsAre("system 12 weight 0", "system 13 weight 0", "system 13 weight 0"))
      << "no text is too long for its place";
}

TEST_F(MacWholeProgram, LivesThroughADayAndLeavesNothingBehind) {
  std::vector<std::string> light;
  const auto forgetAsAReconnectedDisplayDoes = [this] {
    MonitorFirmware::setLevelByButtons(world.monitors[2]->state, 21);
    const std::lock_guard lock(fake::mac().mutex);
    fake::mac().displays[2].table = {};
  };
  const auto isDimmedOnRight = [this] { return whiteOfRight() < 1 && levelShownOnRight() == 0; };
  waitUntil([this] { return desktop.statusItems.count == 1 && mappedKeys() != 0; });
  // All that is read at the start is read by then: a level read anew is another by the rounding.
  then(0.7, [this] {
    EXPECT_THAT(desktop.notes, Contains("policy 1"));
    fake::input().press(controlKey);
    fake::input().press(optionKey);
    fake::input().press(upArrow);
  });
  waitUntil([this] { return levelShownOnRight() > 21; });
  then(0, [this] {
    fake::input().release(upArrow);
    fake::input().release(optionKey);
    fake::input().release(controlKey);
    ASSERT_NE(hud(), nil);
    EXPECT_TRUE([hud() fakeIsSeen]);
    expectAHUDOverEverythingThatTakesNothing();
    EXPECT_EQ(hud().frame.origin.x, 2612) << "the middle of the display under the pointer";
    EXPECT_EQ(hud().frame.origin.y, 32);
    EXPECT_FALSE(desktop.drawnBy(hud().contentView).empty());
  });
  then(0.1, [] {
    constexpr int brightnessDown = 3;
    fake::input().specialKey(brightnessDown, 0x0A);
    fake::input().specialKey(brightnessDown, 0x0B);
  });
  // The keyboard's own key: 40 percent of 50.
  waitUntil([this] { return levelShownOnRight() == 20; });
  then(0, [] {
    for (const TapEvent::SystemDefined& event : fake::input().passed) {
      EXPECT_NE((event.data1 >> 8) & 0xFF, 0x0A) << "the system hears of no press";
    }
  });
  then(0.1, [this] { desktop.open(desktop.statusItems[0].menu); });
  waitUntil([this] { return slider("Right") != nil; });
  then(0, [this] { desktop.drag(slider("Right"), 80); });
  // 80 percent of 50.
  waitUntil([this] { return levelShownOnRight() == 40; });
  then(0, [this] { desktop.choose("Change Hotkeys…"); });
  waitUntil([this] { return editor() != nil; });
  then(0, [this] {
    ASSERT_NE(editor(), nil);
    expectATitledEditorInFullSize(editor());
    clickTheFirstField();
    desktop.press(editor(), keyF5, NSEventModifierFlagControl);
    EXPECT_EQ(settings().at("BrightnessUpKeyCode"), (PropertyValue{std::int64_t{keyF5}}));
    [editor() fakeUserCloses];
  });
  then(0.05, [this, &light] {
    light = desktop.drawnBy(hud().contentView);
    desktop.setDark(true);
  });
  waitUntil([this, &light] { return desktop.drawnBy(hud().contentView) != light; });
  then(0, [this] { dragRightTo(-40); });
  waitUntil(isDimmedOnRight);
  then(0, [this, forgetAsAReconnectedDisplayDoes] {
    forgetAsAReconnectedDisplayDoes();
    [desktop.screens removeObject:desktop.screens[1]];
    EXPECT_EQ(announce(NSNotificationCenter.defaultCenter,
                       NSApplicationDidChangeScreenParametersNotification,
                       NSApplication.sharedApplication),
              1);
  });
  waitUntil(isDimmedOnRight);
  then(0, [forgetAsAReconnectedDisplayDoes] {
    forgetAsAReconnectedDisplayDoes();
    NSNotificationCenter* const workspace = NSWorkspace.sharedWorkspace.notificationCenter;
    EXPECT_EQ(announce(workspace, NSWorkspaceDidWakeNotification, NSWorkspace.sharedWorkspace), 1);
    EXPECT_EQ(
        announce(workspace, NSWorkspaceScreensDidWakeNotification, NSWorkspace.sharedWorkspace), 1);
  });
  // The HUD has faded then.
  waitUntil([isDimmedOnRight] { return isDimmedOnRight() && !hud().visible; });
  then(0, [this] {
    EXPECT_NE(mappedKeys(), 0);
    desktop.open(desktop.statusItems[0].menu);
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
  EXPECT_THAT(desktop.statusItemChanges, ElementsAre("image", "tool tip"));
  // 20 of 50.
  EXPECT_THAT(desktop.heard, Contains("Right, 40%"));
  EXPECT_EQ(desktop.openMenu, nil) << "an open menu doesn't outlive the program";
  EXPECT_EQ(whiteOfRight(), 1) << "nobody is left to brighten it again";
  EXPECT_EQ(mappedKeys(), 0);
}

}  // namespace
}  // namespace brivane
