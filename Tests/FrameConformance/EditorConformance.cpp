#include <gmock/gmock.h>

#include "BrivaneCore/Seams/Keyboard.h"
#include "Tests/FrameConformance/FrameUnderTest.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A view that takes focus when clicked and records its events.
class NotingView : public CustomView {
 public:
  NotingView(std::string ownName, std::vector<std::string>& commonNotes)
      : name(std::move(ownName)), notes(commonNotes) {}

  void setHost(CustomViewHost* newHost) override { host = newHost; }
  bool acceptsFirstResponder() const override { return accepts; }
  void mouseDown() override {
    notes.push_back(name + " clicked");
    host->makeFirstResponder();
    host->setNeedsDisplay();
  }
  bool keyDown(const KeyPress& press) override {
    using namespace modifierFlag;
    // A Mac sets other bits, too.
    const auto modifiers = press.modifierFlags & (shift | control | option | command);
    notes.push_back(name + " key " + std::to_string(press.keyCode) + " with " +
                    std::to_string(modifiers));
    return true;
  }
  bool resignFirstResponder() override {
    notes.push_back(name + " resigns");
    return true;
  }
  DisplayList draw() const override {
    return {FilledRectangle{{{0, 0, 100, 30}, 6}, Paint{Color{}}}};
  }
  std::string accessibilityText() const override { return name; }

  CustomViewHost* host = nullptr;
  bool accepts = true;

 private:
  const std::string name;
  std::vector<std::string>& notes;
};

class EditorConformance : public FrameConformance {
 protected:
  EditorConformance() {
    window->onWillClose([this] {
      notes.emplace_back("will close");
      if (onClose) onClose();
    });
    window->setContent(items());
    window->makeKeyAndOrderFront();
    underTest->pass(0.05);
  }

  std::vector<WindowItem> items() {
    return {WindowLabel{{20, 160, 200, 20}, "Keys"},
            WindowView{{20, 100, 100, 30}, &first, "First"},
            WindowView{{20, 60, 100, 30}, &second, "Second"},
            WindowButton{{20, 20, 100, 26}, "Reset", [this] {
                           notes.emplace_back("pressed");
                           if (onPress) onPress();
                         }}};
  }

  std::vector<std::string> notes;
  Task onPress;
  Task onClose;
  NotingView first{"first", notes};
  NotingView second{"second", notes};
  std::unique_ptr<EditorWindow> window =
      frame.makeEditorWindow({.contentWidth = 420,
                              .contentHeight = 210,
                              .styleMask = titledStyle | closableStyle,
                              .isReleasedWhenClosed = false,
                              .title = "Editor"});
};

TEST_F(EditorConformance, TheContentHasTheSizeItWasMadeWith) {
  EXPECT_EQ(window->contentWidth(), 420);
  EXPECT_EQ(window->contentHeight(), 210);
}

TEST_F(EditorConformance, AViewHasAHostWhileInTheWindow) {
  EXPECT_NE(first.host, nullptr);
  window->setContent({WindowView{{0, 0, 100, 30}, &second, "Second"}});
  EXPECT_EQ(first.host, nullptr);
  EXPECT_NE(second.host, nullptr);
  window.reset();
  EXPECT_EQ(second.host, nullptr);
}

TEST_F(EditorConformance, KeysGoToTheClickedView) {
  underTest->click("First");
  underTest->press({keyF5, modifierFlag::control | modifierFlag::option});
  underTest->press({keyF5, modifierFlag::shift | modifierFlag::command});
  EXPECT_THAT(
      notes, ElementsAre("first clicked", "first key 96 with 786432", "first key 96 with 1179648"));
}

TEST_F(EditorConformance, AViewThatWasNotClickedGetsNoKeys) {
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, IsEmpty());
}

// A desktop may give focus to a view before it reports the click.
TEST_F(EditorConformance, ASecondViewTakesFocusFromTheFirst) {
  underTest->click("First");
  EXPECT_THAT(notes, ElementsAre("first clicked"));
  notes.clear();
  underTest->click("Second");
  EXPECT_THAT(notes, testing::UnorderedElementsAre("second clicked", "first resigns"));
  notes.clear();
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, ElementsAre("second key 96 with 262144"));
}

TEST_F(EditorConformance, AViewThatGaveUpFocusGetsNoKeys) {
  underTest->click("First");
  first.host->resignFirstResponder();
  first.host->resignFirstResponder();
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, ElementsAre("first clicked", "first resigns"));
}

TEST_F(EditorConformance, AViewThatDoesNotAcceptFocusGetsNoKeys) {
  first.accepts = false;
  underTest->click("First");
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, ElementsAre("first clicked"));
}

TEST_F(EditorConformance, AButtonMayReplaceTheContentThatItIsIn) {
  onPress = [this] { window->setContent(items()); };
  underTest->pressButton("Reset");
  onPress = {};
  underTest->pressButton("Reset");
  EXPECT_THAT(notes, ElementsAre("pressed", "pressed"));
  EXPECT_NE(first.host, nullptr);
}

TEST_F(EditorConformance, NewContentHasNoFocusedView) {
  underTest->click("First");
  notes.clear();
  window->setContent(items());
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, testing::Not(testing::Contains(testing::HasSubstr("key"))));
}

TEST_F(EditorConformance, ClosingIsReportedEachTimeAndTheWindowCanBeShownAgain) {
  underTest->closeEditor();
  window->makeKeyAndOrderFront();
  underTest->pass(0.05);
  underTest->click("Second");
  underTest->closeEditor();
  EXPECT_THAT(notes, ElementsAre("will close", "second clicked", "second resigns", "will close"));
}

TEST_F(EditorConformance, AReopenedWindowHasNoFocusedView) {
  underTest->click("First");
  underTest->closeEditor();
  window->makeKeyAndOrderFront();
  underTest->pass(0.05);
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, ElementsAre("first clicked", "first resigns", "will close"));
}

TEST_F(EditorConformance, AnotherWindowTakesFocusFromTheViewForGood) {
  underTest->click("First");
  underTest->leaveEditor();
  EXPECT_THAT(notes, ElementsAre("first clicked", "first resigns"));
  window->makeKeyAndOrderFront();
  underTest->pass(0.05);
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, ElementsAre("first clicked", "first resigns"));
}

struct QuietMenuDelegate : MenuDelegate {
  void menuWillOpen() override {}
  void menuDidClose() override {}
};

TEST_F(EditorConformance, AnOpenMenuLeavesFocusWithTheView) {
  QuietMenuDelegate delegate;
  const auto statusItem = frame.makeStatusItem();
  statusItem->configureButton(
      {{FilledRectangle{{{0, 0, 8, 8}, 2}, Paint{Color{}}}}, 8, 8, "it", {0, 0, 8, 8}});
  statusItem->menu().setDelegate(&delegate);
  statusItem->menu().setItems({MenuText{"Halden"}});
  underTest->click("First");
  underTest->openMenu();
  underTest->closeMenu();
  underTest->press({keyF5, modifierFlag::control});
  EXPECT_THAT(notes, ElementsAre("first clicked", "first key 96 with 262144"));
}

TEST_F(EditorConformance, TheWindowMayBeDestroyedAsItCloses) {
  onClose = [this] { window.reset(); };
  underTest->closeEditor();
  EXPECT_THAT(notes, ElementsAre("will close"));
  EXPECT_EQ(first.host, nullptr);
}

}  // namespace
}  // namespace brivane
