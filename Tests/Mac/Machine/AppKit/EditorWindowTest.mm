#include <gmock/gmock.h>

#include "BrivaneCore/Seams/Keyboard.h"
#include "Machines/Mac/Frame/EditorWindow.h"
#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Support/VirtualKeys.h"

/// What a button of the editor sends.
@interface NSObject (EditorHands)
- (void)pressed:(NSButton*)button;
@end

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t letterA = 0;
constexpr std::uint16_t keyQ = 12;
constexpr std::uint16_t keyW = 13;

/// A field that waits for keys only if it is told to.
class Field : public CustomView {
 public:
  void setHost(CustomViewHost* newHost) override { host = newHost; }
  bool acceptsFirstResponder() const override { return true; }
  void mouseDown() override { ++clicks; }
  bool keyDown(const KeyPress& press) override {
    keys.push_back(press.keyCode);
    return takesKeys;
  }
  bool resignFirstResponder() override { return true; }
  DisplayList draw() const override {
    return {FilledRectangle{{{0, 0, 100, 30}, 0}, Paint{SystemPaint{SystemColor::accent, 0.12}}}};
  }
  std::string accessibilityText() const override { return "Control Option Up"; }

  CustomViewHost* host = nullptr;
  int clicks = 0;
  bool takesKeys = true;
  std::vector<int> keys;
};

class MacEditorWindowTest : public AppKitTest {
 protected:
  MacEditorWindowTest() {
    window->setContent({WindowLabel{{20, 166, 380, 18}, "Click a field", 12},
                        WindowView{{200, 114, 200, 30}, &field, "Brighter"},
                        WindowButton{{248, 20, 152, 26}, "Defaults", {}}});
  }

  /// As the program shows it.
  void show() {
    frame.application().activateIgnoringOtherApplications();
    window->makeKeyAndOrderFront();
  }
  NSWindow* systemWindow() { return desktop.windowTitled("Hotkeys"); }
  NSView* view(NSUInteger index) { return [systemWindow().contentView fakeSubviews][index]; }

  Field field;
  std::unique_ptr<EditorWindow> window = frame.makeEditorWindow({.contentWidth = 420,
                                                                 .contentHeight = 210,
                                                                 .styleMask = 3,
                                                                 .backing = 2,
                                                                 .isDeferred = false,
                                                                 .isReleasedWhenClosed = false,
                                                                 .title = "Hotkeys"});
};

TEST_F(MacEditorWindowTest, ItHasTheAttributesThatTheProgramGives) {
  EXPECT_THAT(desktop.notes, ElementsAre("window, style 3, backing 2"));
  EXPECT_EQ([systemWindow() fakeStyleMask], NSWindowStyleMaskTitled | NSWindowStyleMaskClosable);
  EXPECT_FALSE(systemWindow().releasedWhenClosed);
}

TEST_F(MacEditorWindowTest, ItCanBeCentredAndTakesTheKeys) {
  window->center();
  show();
  EXPECT_TRUE([systemWindow() fakeIsCentered]);
  EXPECT_TRUE([systemWindow() fakeIsKey]);
}

TEST_F(MacEditorWindowTest, ItIsInFrontEvenWhileTheSystemKeepsAnotherApplicationActive) {
  desktop.activation = FakeDesktop::Activation::never;
  show();
  bench.pass(0.1);
  EXPECT_TRUE([systemWindow() fakeIsSeen]);
  EXPECT_FALSE([systemWindow() fakeIsKey]) << "before the user clicks into it";
}

TEST_F(MacEditorWindowTest, ItTakesTheKeysOnceTheSystemMakesTheApplicationActive) {
  desktop.activation = FakeDesktop::Activation::later;
  show();
  EXPECT_FALSE([systemWindow() fakeIsKey]);
  bench.pass(0.1);
  EXPECT_TRUE([systemWindow() fakeIsKey]);
}

TEST_F(MacEditorWindowTest, ItComesToTheSpaceThatTheUserLooksAt) {
  show();
  [systemWindow() performClose:nil];
  bench.pass(0);
  desktop.activeSpace = 2;
  desktop.isActiveSpaceFullScreen = true;
  show();
  EXPECT_TRUE([systemWindow() fakeIsSeen]);
}

TEST_F(MacEditorWindowTest, OnceItIsClosedTheApplicationBeforeIsActiveAndItCanBeShownAgain) {
  const auto hud = frame.makeHUDWindow({.contentRect = {0, 0, 360, 54}, .level = 25});
  show();
  hud->orderFrontRegardless();
  [systemWindow() performClose:nil];
  bench.pass(0);
  EXPECT_FALSE(desktop.isActive);
  EXPECT_TRUE(hud->isVisible());
  [NSApplication.sharedApplication unhideWithoutActivation];
  EXPECT_FALSE(systemWindow().visible) << "the user has closed it";
  [NSApplication.sharedApplication hide:nil];
  show();
  EXPECT_TRUE([systemWindow() fakeIsSeen]);
  EXPECT_TRUE([systemWindow() fakeIsKey]);
}

TEST_F(MacEditorWindowTest, AWindowThatIsShownAgainAsItClosesKeepsTheKeys) {
  show();
  [systemWindow() performClose:nil];
  window->makeKeyAndOrderFront();
  bench.pass(0);
  EXPECT_TRUE([systemWindow() fakeIsKey]);
}

TEST_F(MacEditorWindowTest, CommandWClosesItAndCommandQEndsTheApplication) {
  struct Delegate : ApplicationDelegate {
    void applicationDidFinishLaunching() override {}
    void applicationWasOpenedAgain() override {}
    void applicationWillTerminate() override { ++ends; }
    int ends = 0;
  } delegate;
  frame.application().setDelegate(&delegate);
  show();
  desktop.press(systemWindow(), keyQ, NSEventModifierFlagCommand);
  EXPECT_EQ(delegate.ends, 1);
  desktop.press(systemWindow(), keyW, NSEventModifierFlagCommand);
  EXPECT_FALSE(systemWindow().visible);
}

TEST_F(MacEditorWindowTest, AFieldThatWaitsTakesTheKeysOfTheMenuToo) {
  show();
  field.host->makeFirstResponder();
  desktop.press(systemWindow(), keyQ, NSEventModifierFlagCommand);
  desktop.press(systemWindow(), keyW, NSEventModifierFlagCommand);
  EXPECT_THAT(field.keys, ElementsAre(keyQ, keyW));
  EXPECT_TRUE(systemWindow().visible);
}

TEST_F(MacEditorWindowTest, ItsPartsLieWhereTheProgramPutsThem) {
  auto* const label = static_cast<NSTextField*>(view(0));
  EXPECT_EQ(textOf(label.stringValue), "Click a field");
  EXPECT_EQ(textOfFont(label.font), "system 12 weight 0");
  EXPECT_EQ(label.frame.origin.y, 166);
  EXPECT_EQ(view(1).frame.origin.x, 200);
  EXPECT_EQ(view(1).frame.size.height, 30);
  auto* const button = static_cast<NSButton*>(view(2));
  EXPECT_EQ(textOf(button.title), "Defaults");
  EXPECT_EQ(button.bezelStyle, NSBezelStyleRounded);
  EXPECT_EQ(button.frame.size.width, 152);
}

TEST_F(MacEditorWindowTest, TextsThatAreTooLongAreSmaller) {
  window->setContent({WindowLabel{{0, 0, 100, 20}, "Nineteen characters", 13},
                      WindowLabel{{0, 0, 20, 20}, "Nineteen characters", 13}});
  EXPECT_EQ(textOfFont(static_cast<NSTextField*>(view(0)).font), "system 10 weight 0");
  EXPECT_EQ(textOfFont(static_cast<NSTextField*>(view(1)).font), "system 9 weight 0");
}

TEST_F(MacEditorWindowTest, ATextAsWideAsItsFieldIsSmallerForFieldsKeepTheirSidesFree) {
  window->setContent({WindowLabel{{0, 0, 130, 20}, "Twenty characters...", 13},
                      WindowLabel{{0, 0, 134, 20}, "Twenty characters...", 13}});
  EXPECT_EQ(textOfFont(static_cast<NSTextField*>(view(0)).font), "system 12 weight 0");
  EXPECT_EQ(textOfFont(static_cast<NSTextField*>(view(1)).font), "system 13 weight 0");
}

TEST_F(MacEditorWindowTest, AFieldDrawsItselfAndIsDrawnAnewWhenItAsks) {
  EXPECT_THAT(desktop.drawnBy(view(1)), ElementsAre("fill accent*0.12: rect 0,0 100x30"));
  field.host->setNeedsDisplay();
  EXPECT_TRUE(view(1).needsDisplay);
}

TEST_F(MacEditorWindowTest, AFieldIsAButtonToAssistiveTechnology) {
  EXPECT_EQ(textOf([view(1) fakeRole]), "AXButton");
  EXPECT_EQ(textOf([view(1) accessibilityLabel]), "Brighter");
  EXPECT_EQ(textOf([view(1) accessibilityValue]), "Control Option Up");
  EXPECT_TRUE([view(1) accessibilityPerformPress]);
  EXPECT_EQ(field.clicks, 1);
}

TEST_F(MacEditorWindowTest, AFieldThatAssistiveTechnologyPressesBringsItsWindowTheKeyboard) {
  desktop.activation = FakeDesktop::Activation::later;
  desktop.notes.clear();
  EXPECT_TRUE([view(1) accessibilityPerformPress]);
  EXPECT_TRUE([systemWindow() fakeIsSeen]);
  bench.pass(0.1);
  EXPECT_TRUE([systemWindow() fakeIsKey]);
  EXPECT_THAT(desktop.notes, ElementsAre("activate, whatever is in front"));
}

TEST_F(MacEditorWindowTest, AFieldThatTakesTheKeysGetsEachOnce) {
  show();
  field.host->makeFirstResponder();
  desktop.press(systemWindow(), 96, NSEventModifierFlagCommand | NSEventModifierFlagControl);
  desktop.press(systemWindow(), keyQ, NSEventModifierFlagControl);
  desktop.press(systemWindow(), keyQ, NSEventModifierFlagOption);
  for (const std::uint16_t alone : {keyF5, keyEscape}) desktop.press(systemWindow(), alone, 0);
  EXPECT_THAT(field.keys, ElementsAre(96, keyQ, keyQ, keyF5, keyEscape));
}

TEST_F(MacEditorWindowTest, AFieldTakesAKeyWithCommandBeforeItIsOneOfAMenu) {
  field.host->makeFirstResponder();
  NSEvent* const event = desktop.keyDown(96, NSEventModifierFlagCommand);
  EXPECT_TRUE([view(1) performKeyEquivalent:event]);
  EXPECT_THAT(field.keys, ElementsAre(96));
}

TEST_F(MacEditorWindowTest, AFieldWithoutTheKeysTakesNoKeyThatIsOfferedToAll) {
  show();
  desktop.press(systemWindow(), 96, NSEventModifierFlagCommand);
  desktop.press(systemWindow(), keyQ, NSEventModifierFlagControl);
  desktop.press(systemWindow(), keyEscape, 0);
  EXPECT_THAT(field.keys, IsEmpty());
  EXPECT_THAT(desktop.notes, Contains(testing::StartsWith("nobody takes key")).Times(3));
}

TEST_F(MacEditorWindowTest, AKeyThatTheFieldDoesNotTakeGoesOn) {
  show();
  field.takesKeys = false;
  field.host->makeFirstResponder();
  desktop.press(systemWindow(), letterA, 0);
  EXPECT_THAT(field.keys, ElementsAre(letterA));
  desktop.press(systemWindow(), keyEscape, 0);
  EXPECT_THAT(field.keys, ElementsAre(letterA, keyEscape, keyEscape));
  for (const auto* const note : {"nobody takes key 0", "nobody takes key 53"}) {
    EXPECT_THAT(desktop.notes, Contains(note));
  }
}

TEST_F(MacEditorWindowTest, TheFieldBeepsAsTheSystemDoes) {
  field.host->beep();
  EXPECT_THAT(desktop.notes, Contains("beep"));
}

TEST_F(MacEditorWindowTest, AFieldThatHasLeftIsAskedForNothing) {
  NSView* const old = view(1);
  NSWindow* const system = systemWindow();
  window->setContent({});
  desktop.click(old, system);
  desktop.press(system, 96, 0);
  EXPECT_EQ(field.clicks, 0);
  EXPECT_THAT(field.keys, IsEmpty());
  EXPECT_FALSE(old.acceptsFirstResponder);
  EXPECT_THAT(desktop.drawnBy(old), IsEmpty());
  EXPECT_EQ([old accessibilityValue], nil);
  EXPECT_FALSE([old accessibilityPerformPress]);
}

TEST_F(MacEditorWindowTest, EventsOfADestroyedWindowAreIgnored) {
  NSWindow* const system = systemWindow();
  window->onWillClose([] { ADD_FAILURE(); });
  auto* const button = static_cast<NSButton*>(view(2));
  const id hands = system.delegate;
  window.reset();
  EXPECT_FALSE(system.visible);
  EXPECT_EQ(system.delegate, nil) << "whoever keeps what was the delegate";
  EXPECT_EQ(button.target, nil);
  [hands windowWillClose:[NSNotification new]];
  [hands pressed:button];
}

TEST_F(MacEditorWindowTest, AButtonStaysUntilItsPressIsOverThoughAnotherContentTakesItsPlace) {
  NSButton* __weak button = nil;
  @autoreleasepool {
    window->setContent(
        {WindowButton{{248, 20, 152, 26}, "Go", [this] { window->setContent({}); }}});
    button = static_cast<NSButton*>(view(0));
  }
  desktop.press(button);
  EXPECT_EQ([systemWindow().contentView fakeSubviews].count, 0U);
}

TEST_F(MacEditorWindowTest, AButtonMayDestroyItsWindow) {
  NSButton* __weak button = nil;
  @autoreleasepool {
    window->setContent({WindowButton{{248, 20, 152, 26}, "Go", [this] { window.reset(); }}});
    button = static_cast<NSButton*>(view(0));
  }
  desktop.press(button);
  EXPECT_EQ(window, nullptr);
}

TEST_F(MacEditorWindowTest, AfterTheEndOfTheApplicationItTakesNothing) {
  int presses = 0;
  window->setContent({WindowView{{200, 114, 200, 30}, &field, "Brighter"},
                      WindowButton{{248, 20, 152, 26}, "Defaults", [&] { ++presses; }}});
  field.host->makeFirstResponder();
  show();
  frame.application().exit(0);
  desktop.press(systemWindow(), 96, 0);
  desktop.press(static_cast<NSButton*>(view(1)));
  EXPECT_THAT(field.keys, IsEmpty());
  EXPECT_EQ(presses, 0);
}

TEST_F(MacEditorWindowTest, TheSystemKeepsNothingOfItForTheNextStart) {
  EXPECT_FALSE(systemWindow().restorable);
}

}  // namespace
}  // namespace brivane
