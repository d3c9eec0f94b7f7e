// The hotkey editor in its window, by mouse and keyboard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <array>
#include <set>

#include "BrivaneApp/HotkeyEditor.h"
#include "BrivaneApp/Strings.h"
#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Qt/Frame/EditorWindow.h"
#include "Tests/Machines/Qt/QtBench.h"
#include "Tests/Support/BuiltResources.h"

namespace brivane {
namespace {

class EditorWindowTest : public testing::Test {
 public:
  ~EditorWindowTest() override { bindings.resetBindings(); }

 protected:
  explicit EditorWindowTest(const std::string& language = "en") : resources(language) {
    bindings.resetBindings();
    editor.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window(), patienceMilliseconds));
    bench.settle();
  }

  QWidget& window() {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible() && widget->windowTitle().size() > 0) return *widget;
    }
    throw std::runtime_error("no editor is shown");
  }
  std::vector<CustomViewWidget*> fields() {
    std::vector<CustomViewWidget*> found;
    for (QWidget* const child : window().findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      auto* const field = dynamic_cast<CustomViewWidget*>(child);
      if (field != nullptr && field->isVisible()) found.push_back(field);
    }
    return found;
  }
  std::string reads(int number) {
    return fields().at(static_cast<std::size_t>(number))->accessibleDescription().toStdString();
  }
  void click(int number) {
    QTest::mouseClick(fields().at(static_cast<std::size_t>(number)), Qt::LeftButton);
  }
  QPushButton& button() { return *window().findChildren<QPushButton*>().at(0); }
  static QAccessibleInterface& accessible(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
  }
  /// With the key code of an X server.
  void press(int key, std::uint16_t evdevCode, Qt::KeyboardModifiers modifiers = {}) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, evdevCode + firstXKeyCode, 0, 0);
    QWidget* const focused = window().focusWidget();
    QApplication::sendEvent(focused != nullptr ? focused : &window(), &event);
  }

  QtBench& bench = QtBench::shared();
  BuiltResources resources;
  StringCatalogue strings{resources, bench.machine().log(), applicationBundle};
  HotkeyBindingStore bindings{bench.machine().defaults()};
  int changes = 0;
  bool isCapturing = false;
  HotkeyEditor editor{bench.machine(), bench.frame(), strings, [this] { ++changes; },
                      [this](bool nowCapturing) { isCapturing = nowCapturing; }};
};

TEST_F(EditorWindowTest, TheContentHasTheSizeAndTitleThatWereAskedFor) {
  EXPECT_EQ(window().size(), QSize(420, 210));
  EXPECT_EQ(window().windowTitle().toStdString(), strings.text(strings::hotkeyEditorWindowTitle));
  EXPECT_EQ(fields().size(), 2u);
  EXPECT_EQ(fields()[0]->geometry(), QRect(200, 66, 200, 30));
}

TEST_F(EditorWindowTest, AClickedFieldWaitsAndTakesTheNextCombination) {
  click(0);
  EXPECT_EQ(reads(0), strings.text(strings::hotkeyEditorPressKeys));
  press(Qt::Key_Control, KEY_LEFTCTRL, Qt::ControlModifier);
  press(Qt::Key_F5, KEY_F5, Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  EXPECT_EQ(reads(0), "⌃⌥⌘F5");
  EXPECT_EQ(bindings.brightnessUpBinding(), (HotkeyBinding{96, 6400}));
  EXPECT_EQ(changes, 1);
  press(Qt::Key_F6, KEY_F6, Qt::ControlModifier);
  EXPECT_EQ(changes, 1) << "it waits no more";
}

TEST_F(EditorWindowTest, EscapeWhileWaitingLeavesTheBindingAndTheWindow) {
  click(0);
  press(Qt::Key_Escape, KEY_ESC);
  EXPECT_EQ(reads(0), "⌃⌥↑");
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(changes, 0);
}

TEST_F(EditorWindowTest, EscapeOtherwiseClosesTheWindowWhichComesBack) {
  QWidget& shown = window();
  press(Qt::Key_Escape, KEY_ESC);
  EXPECT_FALSE(shown.isVisible());
  editor.show();
  EXPECT_TRUE(shown.isVisible());
}

TEST_F(EditorWindowTest, AFieldStopsWaitingWhenTheWindowCloses) {
  click(0);
  window().close();
  editor.show();
  EXPECT_EQ(reads(0), "⌃⌥↑");
  press(Qt::Key_F5, KEY_F5, Qt::ControlModifier);
  EXPECT_EQ(changes, 0);
}

TEST_F(EditorWindowTest, AFieldStopsWaitingWhenAnotherWindowBecomesActive) {
  click(0);
  EXPECT_TRUE(isCapturing);
  QWidget other;
  other.show();
  other.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&other, patienceMilliseconds));
  EXPECT_EQ(reads(0), "⌃⌥↑");
  EXPECT_FALSE(isCapturing);
}

TEST_F(EditorWindowTest, AClickOnTheOtherFieldEndsTheFirstOnesWaiting) {
  click(0);
  click(1);
  EXPECT_EQ(reads(0), "⌃⌥↑");
  EXPECT_EQ(reads(1), strings.text(strings::hotkeyEditorPressKeys));
}

TEST_F(EditorWindowTest, InAnInactiveWindowOnlyOneFieldWaitsToo) {
  QWidget other;
  other.show();
  other.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&other, patienceMilliseconds));
  const auto all = fields();
  QTest::mouseClick(all[0], Qt::LeftButton);
  QTest::mouseClick(all[1], Qt::LeftButton);
  EXPECT_EQ(all[0]->accessibleDescription(), "⌃⌥↑");
}

TEST_F(EditorWindowTest, ByKeyboardTabReachesAFieldAndTheSpaceBarClicksIt) {
  fields()[0]->setFocus();
  QTest::keyClick(&window(), Qt::Key_Tab);
  EXPECT_EQ(window().focusWidget(), fields()[1]);
  QTest::keyClick(fields()[1], Qt::Key_Space);
  EXPECT_EQ(reads(1), strings.text(strings::hotkeyEditorPressKeys));
  press(Qt::Key_Tab, KEY_TAB, Qt::ControlModifier);
  EXPECT_EQ(bindings.brightnessDownBinding(), (HotkeyBinding{48, 4096})) << "Tab can be captured";
}

TEST_F(EditorWindowTest, ReturnAndEnterClickAFieldToo) {
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
    fields()[0]->setFocus();
    QTest::keyClick(fields()[0], key);
    EXPECT_EQ(reads(0), strings.text(strings::hotkeyEditorPressKeys)) << key;
    press(Qt::Key_Escape, KEY_ESC);
  }
}

TEST_F(EditorWindowTest, OnlyTheLeftButtonClicksAField) {
  for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
    QTest::mouseClick(fields()[0], button);
    EXPECT_EQ(reads(0), "⌃⌥↑") << button;
  }
  click(0);
  QTest::mouseClick(fields()[0], Qt::RightButton);
  EXPECT_EQ(reads(0), strings.text(strings::hotkeyEditorPressKeys)) << "it goes on waiting";
}

TEST_F(EditorWindowTest, ACombinationNeedsAModifier) {
  click(0);
  press(Qt::Key_A, KEY_A);
  EXPECT_EQ(reads(0), strings.text(strings::hotkeyEditorPressKeys));
  press(Qt::Key_A, KEY_A, Qt::ShiftModifier);
  EXPECT_EQ(bindings.brightnessUpBinding(), (HotkeyBinding{0, 512}));
}

TEST_F(EditorWindowTest, AClickBesideTheFieldsEndsTheWaiting) {
  click(0);
  QTest::mouseClick(&window(), Qt::LeftButton, {}, {5, 205});
  EXPECT_EQ(reads(0), "⌃⌥↑");
}

TEST_F(EditorWindowTest, TheSpaceBarAndReturnPressTheButton) {
  for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    const int before = changes;
    button().setFocus();
    QTest::keyClick(&button(), key);
    bench.settle();
    EXPECT_EQ(changes, before + 1) << key;
  }
}

TEST_F(EditorWindowTest, TheButtonRestoresBothFieldsFromWithinItsOwnPress) {
  click(0);
  press(Qt::Key_F5, KEY_F5, Qt::ShiftModifier);
  click(1);
  QTest::mouseClick(&button(), Qt::LeftButton);
  bench.settle();
  EXPECT_FALSE(isCapturing);
  EXPECT_EQ(reads(0), "⌃⌥↑");
  EXPECT_EQ(reads(1), "⌃⌥↓");
  EXPECT_EQ(fields().size(), 2u);
}

TEST_F(EditorWindowTest, AssistiveTechnologyReadsTheNameAndTheTextOfAField) {
  const std::array names = {strings::hotkeyEditorIncreaseBrightness,
                            strings::hotkeyEditorDecreaseBrightness};
  const std::array combinations = {"⌃⌥↑", "⌃⌥↓"};
  for (std::size_t number = 0; number < 2; ++number) {
    const auto& field = accessible(*fields().at(number));
    EXPECT_EQ(field.role(), QAccessible::Button);
    EXPECT_EQ(field.text(QAccessible::Name).toStdString(), strings.text(names.at(number)));
    EXPECT_EQ(field.text(QAccessible::Description).toStdString(), combinations.at(number));
    EXPECT_TRUE(field.state().focusable);
    EXPECT_FALSE(field.state().disabled || field.state().invisible);
  }
}

TEST_F(EditorWindowTest, AssistiveTechnologyReadsWhichFieldWaitsAndPressesOne) {
  fields()[1]->setFocus();
  EXPECT_FALSE(accessible(*fields()[0]).state().focused);
  EXPECT_TRUE(accessible(*fields()[1]).state().focused);
  auto& field = accessible(*fields()[0]);
  field.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(field.state().focused);
  EXPECT_EQ(field.text(QAccessible::Description).toStdString(),
            strings.text(strings::hotkeyEditorPressKeys));
}

TEST_F(EditorWindowTest, AFieldPressedByAssistiveTechnologyActivatesItsWindow) {
  QWidget other;
  other.show();
  other.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&other, patienceMilliseconds));
  QWidget& behind = *fields().at(0)->window();
  accessible(*fields().at(0))
      .actionInterface()
      ->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(QTest::qWaitForWindowActive(&behind, patienceMilliseconds));
  EXPECT_TRUE(isCapturing);
}

TEST_F(EditorWindowTest, AssistiveTechnologyReadsTheButtonAndPressesIt) {
  auto& read = accessible(button());
  EXPECT_EQ(read.role(), QAccessible::Button);
  EXPECT_EQ(read.text(QAccessible::Name).toStdString(),
            strings.text(strings::hotkeyEditorResetDefaults));
  EXPECT_TRUE(read.state().focusable);
  EXPECT_FALSE(read.state().disabled || read.state().invisible);
  read.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(QTest::qWaitFor([&] { return changes == 1; }, patienceMilliseconds))
      << "Qt shows it pressed for a moment";
}

TEST_F(EditorWindowTest, AssistiveTechnologyReadsTheWindowsTitleAndContent) {
  const auto& read = accessible(window());
  EXPECT_EQ(read.text(QAccessible::Name).toStdString(),
            strings.text(strings::hotkeyEditorWindowTitle));
  std::multiset<int> roles;
  for (int child = 0; child < read.childCount(); ++child) roles.insert(read.child(child)->role());
  EXPECT_EQ(roles.count(QAccessible::Button), 3u);
}

TEST_F(EditorWindowTest, LooksLikeItsGoldenPictures) {
  QWidget* const focused = window().focusWidget();
  if (focused != nullptr) focused->clearFocus();
  expectGoldenPicture("editor-light", window().grab().toImage());
  click(1);
  expectGoldenPicture("editor-waiting-light", window().grab().toImage());
  bench.appearance().turn(Appearance::dark);
  bench.settle();
  expectGoldenPicture("editor-waiting-dark", window().grab().toImage());
  bench.appearance().turn(Appearance::light);
}

class EditorInLanguageTest : public EditorWindowTest,
                             public testing::WithParamInterface<const char*> {
 protected:
  EditorInLanguageTest() : EditorWindowTest(GetParam()) {}
};

TEST_P(EditorInLanguageTest, EveryTextFitsItsPlace) {
  for (const QLabel* const label : window().findChildren<QLabel*>()) {
    EXPECT_LE(label->sizeHint().width(), label->width()) << label->text().toStdString();
  }
  for (const QPushButton* const button : window().findChildren<QPushButton*>()) {
    EXPECT_LE(button->fontMetrics().horizontalAdvance(button->text()), button->width() - 12)
        << button->text().toStdString();
  }
}

INSTANTIATE_TEST_SUITE_P(Each, EditorInLanguageTest,
                         testing::Values("de", "en", "es", "fr", "ja", "zh-Hans"));

}  // namespace
}  // namespace brivane
