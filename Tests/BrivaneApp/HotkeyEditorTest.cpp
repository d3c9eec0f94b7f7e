#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "BrivaneApp/HotkeyEditor.h"
#include "Tests/Support/ApplicationTexts.h"
#include "Tests/Support/FakeFrame.h"
#include "Tests/Support/VirtualKeys.h"
#include "Tests/Support/WhenDropped.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t brightenField = 0;
constexpr std::size_t dimField = 1;

struct HotkeyEditorTest : testing::Test {
  FakeEditorWindow& window() { return *frame.editorWindow; }

  void capture(std::size_t field, std::uint16_t keyCode, std::uint64_t modifiers) {
    window().click(field);
    EXPECT_TRUE(window().press({keyCode, modifiers}));
  }
  std::vector<std::string> shown() {
    std::vector<std::string> all;
    for (const CustomView* view : window().views()) all.push_back(view->accessibilityText());
    return all;
  }
  std::vector<std::string> takeNotes() {
    std::vector<std::string> notes;
    for (const std::string& line : machine.notes.take()) notes.push_back(line.substr(4));
    return notes;
  }

  FakeMachine machine;
  FakeFrame frame{machine.time, machine.notes};
  StringCatalogue texts = applicationTexts(machine);
  HotkeyBindingStore bindings{machine.settings};
  /// The stored bindings at each change.
  std::vector<std::string> changes;
  bool isCapturing = false;
  int reports = 0;
  std::unique_ptr<HotkeyEditor> editor = std::make_unique<HotkeyEditor>(
      machine, frame, texts,
      [this] {
        changes.push_back(bindings.brightnessUpBinding().describedKeys() + " " +
                          bindings.brightnessDownBinding().describedKeys());
      },
      [this](bool nowCapturing) {
        isCapturing = nowCapturing;
        ++reports;
      });
};

TEST_F(HotkeyEditorTest, ThereIsNoWindowBeforeTheEditorIsShown) {
  EXPECT_EQ(frame.editorWindowsMade, 0);
}

TEST_F(HotkeyEditorTest, TheWindowIsTitledAndClosableAndKeptWhenClosed) {
  editor->show();
  EXPECT_EQ(window().attributes, (EditorWindowAttributes{.contentWidth = 420,
                                                         .contentHeight = 210,
                                                         .styleMask = 3,
                                                         .backing = 2,
                                                         .isDeferred = false,
                                                         .isReleasedWhenClosed = false,
                                                         .title = "hotkeyEditor.windowTitle"}));
}

TEST_F(HotkeyEditorTest, ShowingCentresTheWindowThenActivatesThenBringsItToTheFront) {
  editor->show();
  EXPECT_THAT(takeNotes(), ElementsAre("center editor", "activate", "editor to front"));
}

TEST_F(HotkeyEditorTest, ShowingAgainBringsTheSameWindowBackAsItWas) {
  editor->show();
  window().close();
  takeNotes();
  editor->show();
  EXPECT_THAT(takeNotes(), ElementsAre("activate", "editor to front"));
  EXPECT_EQ(frame.editorWindowsMade, 1);
  EXPECT_EQ(window().contentChanges, 1);
}

TEST_F(HotkeyEditorTest, ClosingMakesTheApplicationAnAccessoryAgain) {
  editor->show();
  EXPECT_EQ(frame.app.policy, std::nullopt);
  window().close();
  EXPECT_EQ(frame.app.policy, ActivationPolicy::accessory);
}

/// One line per item: kind, frame and text.
std::vector<std::string> layout(const FakeEditorWindow& window) {
  const auto where = [](const Rect& rect) {
    return describe(Point{rect.x, rect.y}) + " " + describe(Point{rect.width, rect.height}) + " ";
  };
  struct Lines {
    decltype(where) place;
    std::string operator()(const WindowLabel& label) const {
      return "label " + place(label.frame) + label.text + " " +
             std::to_string(static_cast<int>(label.fontSize));
    }
    std::string operator()(const WindowButton& button) const {
      return "button " + place(button.frame) + button.title;
    }
    std::string operator()(const WindowView& view) const {
      return "field " + place(view.frame) + view.accessibilityLabel + ": " +
             view.view->accessibilityText();
    }
  };
  std::vector<std::string> lines;
  for (const WindowItem& item : window.items) lines.push_back(std::visit(Lines{where}, item));
  return lines;
}

TEST_F(HotkeyEditorTest, InstructionsTwoNamedRowsAndAButtonFromTopToBottom) {
  editor->show();
  EXPECT_THAT(layout(window()),
              ElementsAre("label {20, 166} {380, 18} hotkeyEditor.instructions 12",
                          "label {20, 118} {170, 20} hotkeyEditor.increaseBrightness 13",
                          "field {200, 114} {200, 30} hotkeyEditor.increaseBrightness: ⌃⌥↑",
                          "label {20, 70} {170, 20} hotkeyEditor.decreaseBrightness 13",
                          "field {200, 66} {200, 30} hotkeyEditor.decreaseBrightness: ⌃⌥↓",
                          "button {248, 20} {152, 26} hotkeyEditor.resetDefaults"));
}

TEST_F(HotkeyEditorTest, TheFieldsShowWhatIsStoredAndAreDrawnAtTheirSize) {
  bindings.setBrightnessDownBinding({keyF5, HotkeyBinding::command});
  editor->show();
  EXPECT_THAT(shown(), ElementsAre("⌃⌥↑", "⌘F5"));
  const auto picture = window().views().at(dimField)->draw();
  EXPECT_EQ(std::get<TextRun>(picture.at(2)).box, (Rect{0, 0, 200, 30}));
}

TEST_F(HotkeyEditorTest, ACapturedCombinationIsStoredAndThenReported) {
  editor->show();
  capture(brightenField, keyF5, modifierFlag::control);
  EXPECT_THAT(changes, ElementsAre("ctrl+key96 ctrl+opt+key125"));
  capture(dimField, keyF5, modifierFlag::shift);
  EXPECT_THAT(changes, ElementsAre("ctrl+key96 ctrl+opt+key125", "ctrl+key96 shift+key96"));
  EXPECT_THAT(shown(), ElementsAre("⌃F5", "⇧F5"));
  EXPECT_EQ(window().firstResponder, nullptr);
}

TEST_F(HotkeyEditorTest, AKeyWithoutAModifierBeepsAndChangesNothing) {
  editor->show();
  window().click(brightenField);
  EXPECT_TRUE(window().press({0, 0}));
  EXPECT_EQ(frame.app.beeps, 1);
  EXPECT_THAT(changes, IsEmpty());
  EXPECT_THAT(machine.settings.values, IsEmpty());
}

TEST_F(HotkeyEditorTest, ClosingTheWindowEndsCapturing) {
  editor->show();
  window().click(brightenField);
  window().close();
  editor->show();
  EXPECT_THAT(shown(), ElementsAre("⌃⌥↑", "⌃⌥↓"));
  EXPECT_FALSE(window().press({keyF5, modifierFlag::control}));
  EXPECT_THAT(changes, IsEmpty());
}

TEST_F(HotkeyEditorTest, CapturingIsReportedUntilNoFieldCaptures) {
  editor->show();
  const std::vector<std::function<void()>> reasons = {
      [this] {
        window().press({keyF5, modifierFlag::control});
      },
      [this] {
        window().press({keyEscape, 0});
      },
      [this] { window().close(); }, [this] { window().pressButton("hotkeyEditor.resetDefaults"); },
      [this] { editor.reset(); }};
  for (const auto& end : reasons) {
    for (const auto field : {brightenField, dimField}) {
      window().click(field);
      EXPECT_TRUE(isCapturing);
    }
    end();
    EXPECT_FALSE(isCapturing);
  }
}

TEST_F(HotkeyEditorTest, WithoutCapturingNothingIsReported) {
  editor->show();
  window().pressButton("hotkeyEditor.resetDefaults");
  window().close();
  editor.reset();
  EXPECT_EQ(reports, 0);
}

TEST_F(HotkeyEditorTest, OnlyOneFieldCaptures) {
  editor->show();
  window().click(brightenField);
  window().click(dimField);
  EXPECT_THAT(shown(), ElementsAre("⌃⌥↑", "hotkeyEditor.pressKeys"));
}

TEST_F(HotkeyEditorTest, ResetRestoresBothDefaultsInStoreAndFieldsAndReportsOnce) {
  editor->show();
  capture(brightenField, keyF5, modifierFlag::control);
  capture(dimField, keyF5, modifierFlag::shift);
  changes.clear();
  window().pressButton("hotkeyEditor.resetDefaults");
  EXPECT_THAT(changes, ElementsAre("ctrl+opt+key126 ctrl+opt+key125"));
  EXPECT_THAT(shown(), ElementsAre("⌃⌥↑", "⌃⌥↓"));
  EXPECT_THAT(machine.settings.values, IsEmpty());
}

TEST_F(HotkeyEditorTest, TheFieldsAreRebuiltOnlyAfterTheResetWasReported) {
  bindings.setBrightnessUpBinding({keyF5, HotkeyBinding::control});
  int contentChangesWhenReported = 0;
  HotkeyEditor other(
      machine, frame, texts,
      [&] { contentChangesWhenReported = frame.editorWindow->contentChanges; }, [](bool) {});
  other.show();
  window().pressButton("hotkeyEditor.resetDefaults");
  EXPECT_EQ(contentChangesWhenReported, 1);
  EXPECT_EQ(window().contentChanges, 2);
}

TEST_F(HotkeyEditorTest, ResetLaysTheContentOutForTheWindowsCurrentSize) {
  editor->show();
  window().width = 520;
  window().height = 300;
  window().pressButton("hotkeyEditor.resetDefaults");
  EXPECT_THAT(layout(window()),
              ElementsAre("label {20, 256} {480, 18} hotkeyEditor.instructions 12",
                          "label {20, 208} {170, 20} hotkeyEditor.increaseBrightness 13",
                          "field {200, 204} {300, 30} hotkeyEditor.increaseBrightness: ⌃⌥↑",
                          "label {20, 160} {170, 20} hotkeyEditor.decreaseBrightness 13",
                          "field {200, 156} {300, 30} hotkeyEditor.decreaseBrightness: ⌃⌥↓",
                          "button {348, 20} {152, 26} hotkeyEditor.resetDefaults"));
}

TEST_F(HotkeyEditorTest, ResetEndsACaptureThatIsUnderWay) {
  editor->show();
  window().click(brightenField);
  window().pressButton("hotkeyEditor.resetDefaults");
  EXPECT_THAT(shown(), ElementsAre("⌃⌥↑", "⌃⌥↓"));
  capture(dimField, keyF5, modifierFlag::command);
  EXPECT_THAT(shown(), ElementsAre("⌃⌥↑", "⌘F5"));
}

TEST_F(HotkeyEditorTest, TheWindowIsDestroyedBeforeItsFields) {
  editor->show();
  bool fieldsLive = true;
  bool fieldsLivedThen = false;
  for (CustomView* const view : window().views()) {
    dynamic_cast<HotkeyCaptureField&>(*view).onCapture =
        [kept = whenDropped([&] { fieldsLive = false; })](const HotkeyBinding&) {};
  }
  window().items.emplace_back(
      WindowButton{{}, "last", [kept = whenDropped([&] { fieldsLivedThen = fieldsLive; })] {}});
  editor.reset();
  EXPECT_EQ(frame.editorWindow, nullptr);
  EXPECT_TRUE(fieldsLivedThen);
  EXPECT_FALSE(fieldsLive);
}

TEST_F(HotkeyEditorTest, ResetWithoutAWindowStillRestoresAndReports) {
  bindings.setBrightnessUpBinding({keyF5, HotkeyBinding::control});
  editor->resetDefaults();
  EXPECT_THAT(changes, ElementsAre("ctrl+opt+key126 ctrl+opt+key125"));
}

}  // namespace
}  // namespace brivane
