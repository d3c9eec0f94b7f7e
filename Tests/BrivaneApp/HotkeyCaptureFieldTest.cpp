#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

#include "BrivaneApp/HotkeyCaptureField.h"
#include "Tests/Support/ApplicationTexts.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t keyA = 0;

/// Records the field's requests in order.
struct FakeHost : CustomViewHost {
  explicit FakeHost(HotkeyCaptureField& hostedField) : field(hostedField) {}

  void setNeedsDisplay() override { calls.push_back("redraw " + field.accessibilityText()); }
  void makeFirstResponder() override { calls.emplace_back("take keys"); }
  void resignFirstResponder() override {
    calls.emplace_back("give up keys");
    EXPECT_TRUE(field.resignFirstResponder());
  }
  void beep() override { calls.emplace_back("beep"); }

  HotkeyCaptureField& field;
  std::vector<std::string> calls;
};

struct HotkeyCaptureFieldTest : testing::Test {
  HotkeyCaptureFieldTest() {
    field.setHost(&host);
    field.binding = HotkeyBinding{126, 6144};
    field.onCapture = [this](const HotkeyBinding& binding) {
      host.calls.push_back("captured " + binding.describedKeys());
      captured.push_back(binding);
    };
    machine.keys.characters[keyA] = "a";
  }
  void noteCapturing() {
    field.onCapturing = [this](bool isCapturing) {
      host.calls.emplace_back(isCapturing ? "waits" : "waits no more");
    };
  }

  bool press(std::uint16_t keyCode, std::uint64_t modifiers = 0) {
    return field.keyDown({keyCode, modifiers});
  }
  std::vector<std::string> takeCalls() { return std::exchange(host.calls, {}); }

  FakeMachine machine;
  StringCatalogue texts = applicationTexts(machine);
  HotkeyCaptureField field{{200, 114, 200, 30}, texts, machine.keys};
  FakeHost host{field};
  std::vector<HotkeyBinding> captured;
};

TEST_F(HotkeyCaptureFieldTest, TheFieldShowsItsBindingInGlyphsOrThatNoneIsSet) {
  EXPECT_EQ(field.accessibilityText(), "⌃⌥↑");
  field.binding = std::nullopt;
  EXPECT_EQ(field.accessibilityText(), "hotkeyEditor.notSet");
}

TEST_F(HotkeyCaptureFieldTest, TheFieldAcceptsFocus) {
  EXPECT_TRUE(field.acceptsFirstResponder());
}

TEST_F(HotkeyCaptureFieldTest, AClickTakesFocusAndStartsCapturing) {
  field.mouseDown();
  EXPECT_THAT(takeCalls(), ElementsAre("take keys", "redraw hotkeyEditor.pressKeys"));
}

TEST_F(HotkeyCaptureFieldTest, KeysGoToTheWindowWhileNotCapturing) {
  EXPECT_FALSE(press(keyA, modifierFlag::shift));
  EXPECT_FALSE(press(keyEscape));
  EXPECT_THAT(takeCalls(), IsEmpty());
  EXPECT_EQ(field.binding, (HotkeyBinding{126, 6144}));
}

TEST_F(HotkeyCaptureFieldTest, AKeyWithoutAModifierBeepsAndCapturingGoesOn) {
  field.mouseDown();
  takeCalls();
  EXPECT_TRUE(press(keyA));
  EXPECT_TRUE(press(keyA, 0x10000 | 0x800000 | 0x200000)) << "Caps Lock, Fn and numeric pad";
  EXPECT_THAT(takeCalls(), ElementsAre("beep", "beep"));
  EXPECT_EQ(field.accessibilityText(), "hotkeyEditor.pressKeys");
  EXPECT_THAT(captured, IsEmpty());
}

TEST_F(HotkeyCaptureFieldTest, ShiftIsModifierEnough) {
  field.mouseDown();
  press(keyA);
  EXPECT_TRUE(press(keyA, modifierFlag::shift));
  EXPECT_THAT(captured, ElementsAre(HotkeyBinding{keyA, 512}));
  EXPECT_EQ(field.accessibilityText(), "⇧A");
}

TEST_F(HotkeyCaptureFieldTest, ControlOptionCommandF5IsKey96WithMask6400) {
  field.mouseDown();
  press(keyF5, modifierFlag::control | modifierFlag::option | modifierFlag::command);
  EXPECT_THAT(captured, ElementsAre(HotkeyBinding{96, 6400}));
  EXPECT_EQ(field.accessibilityText(), "⌃⌥⌘F5");
}

TEST_F(HotkeyCaptureFieldTest, AnAcceptedKeyIsShownThenFocusIsGivenUpThenTheKeyIsReportedOnce) {
  field.mouseDown();
  takeCalls();
  EXPECT_TRUE(press(keyF5, modifierFlag::control));
  EXPECT_THAT(takeCalls(), ElementsAre("redraw hotkeyEditor.pressKeys", "give up keys",
                                       "redraw ⌃F5", "captured ctrl+key96"));
  EXPECT_FALSE(press(keyA, modifierFlag::control)) << "capturing has ended";
}

TEST_F(HotkeyCaptureFieldTest, ACaptureWithoutACallbackIsKept) {
  field.onCapture = nullptr;
  field.mouseDown();
  EXPECT_TRUE(press(keyF5, modifierFlag::control));
  EXPECT_EQ(field.binding, (HotkeyBinding{96, 4096}));
}

TEST_F(HotkeyCaptureFieldTest, EscapeEndsCapturingAndLeavesTheBinding) {
  for (const std::uint64_t modifiers : {std::uint64_t{0}, modifierFlag::command}) {
    field.mouseDown();
    takeCalls();
    EXPECT_TRUE(press(keyEscape, modifiers));
    EXPECT_THAT(takeCalls(), ElementsAre("redraw ⌃⌥↑", "give up keys", "redraw ⌃⌥↑"));
    EXPECT_FALSE(press(keyEscape));
  }
  EXPECT_EQ(field.binding, (HotkeyBinding{126, 6144}));
  EXPECT_THAT(captured, IsEmpty());
}

TEST_F(HotkeyCaptureFieldTest, LosingFocusEndsCapturing) {
  field.mouseDown();
  takeCalls();
  EXPECT_TRUE(field.resignFirstResponder());
  EXPECT_THAT(takeCalls(), ElementsAre("redraw ⌃⌥↑"));
  EXPECT_FALSE(press(keyA, modifierFlag::shift));
}

TEST_F(HotkeyCaptureFieldTest, LosingFocusOutsideAWindowIsHarmless) {
  field.mouseDown();
  field.setHost(nullptr);
  EXPECT_TRUE(field.resignFirstResponder());
  EXPECT_EQ(field.accessibilityText(), "⌃⌥↑");
}

TEST_F(HotkeyCaptureFieldTest, RepeatedClicksReportOneStartOfCapturing) {
  noteCapturing();
  field.mouseDown();
  EXPECT_THAT(takeCalls(), ElementsAre("take keys", "redraw hotkeyEditor.pressKeys", "waits"));
  field.mouseDown();
  press(keyA);
  EXPECT_THAT(takeCalls(), ElementsAre("take keys", "redraw hotkeyEditor.pressKeys", "beep"));
}

TEST_F(HotkeyCaptureFieldTest, TheEndOfCapturingIsReportedOnceAfterTheCapture) {
  noteCapturing();
  field.mouseDown();
  takeCalls();
  press(keyF5, modifierFlag::control);
  EXPECT_THAT(takeCalls(), ElementsAre("redraw hotkeyEditor.pressKeys", "give up keys",
                                       "redraw ⌃F5", "captured ctrl+key96", "waits no more"));
}

TEST_F(HotkeyCaptureFieldTest, TheEndOfCapturingIsReportedOnceWhateverTheReason) {
  noteCapturing();
  const std::vector<std::function<void()>> reasons = {[this] { press(keyEscape); },
                                                      [this] { field.resignFirstResponder(); },
                                                      [this] { field.setHost(nullptr); }};
  for (const auto& end : reasons) {
    field.setHost(&host);
    field.mouseDown();
    takeCalls();
    end();
    field.resignFirstResponder();
    const auto calls = takeCalls();
    EXPECT_EQ(std::ranges::count(calls, "waits no more"), 1);
  }
}

TEST_F(HotkeyCaptureFieldTest, AnIdleFieldReportsNothingWhenItLosesFocusAndWindow) {
  noteCapturing();
  field.resignFirstResponder();
  field.setHost(nullptr);
  EXPECT_THAT(takeCalls(), ElementsAre("redraw ⌃⌥↑"));
}

TEST_F(HotkeyCaptureFieldTest, OnlyFourModifierFlagsCount) {
  struct Case {
    std::uint64_t flags;
    std::uint32_t mask;
  };
  for (const auto& [flags, mask] : std::vector<Case>{{0, 0},
                                                     {0x40000, 4096},
                                                     {0x80000, 2048},
                                                     {0x20000, 512},
                                                     {0x100000, 256},
                                                     {0x1E0000, 6912},
                                                     {0x10000, 0},
                                                     {0x200000, 0},
                                                     {0x800000, 0},
                                                     {0xFFFFFFFFFFFFFFFF, 6912},
                                                     {0xFFFFFFFFFFE1FFFF, 0}}) {
    EXPECT_EQ(HotkeyCaptureField::carbonModifiers(flags), mask) << std::hex << flags;
  }
}

TEST_F(HotkeyCaptureFieldTest, AnIdleFieldIsDrawnInControlColours) {
  const RoundedRectangle outline{{0.5, 0.5, 199, 29}, 6};
  EXPECT_EQ(
      field.draw(),
      (DisplayList{FilledRectangle{outline, Paint{SystemPaint{SystemColor::controlBackground, 1}}},
                   StrokedRectangle{outline, 1, Paint{SystemPaint{SystemColor::separator, 1}}},
                   TextRun{{0, 0, 200, 30},
                           "⌃⌥↑",
                           13,
                           FontWeight::medium,
                           false,
                           TextAlignment::center,
                           SystemPaint{SystemColor::label, 1}}}));
}

TEST_F(HotkeyCaptureFieldTest, ACapturingFieldIsDrawnInTheAccentColour) {
  field.mouseDown();
  const RoundedRectangle outline{{0.5, 0.5, 199, 29}, 6};
  const SystemPaint accent{SystemColor::accent, 1};
  EXPECT_EQ(field.draw(),
            (DisplayList{FilledRectangle{outline, Paint{SystemPaint{SystemColor::accent, 0.12}}},
                         StrokedRectangle{outline, 2, Paint{accent}},
                         TextRun{{0, 0, 200, 30},
                                 "hotkeyEditor.pressKeys",
                                 13,
                                 FontWeight::medium,
                                 false,
                                 TextAlignment::center,
                                 accent}}));
}

}  // namespace
}  // namespace brivane
