// The frame suite on Qt without a screen, in real time. A process can have several Qt applications
// one after the other.
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include "BrivaneCore/Seams/Keyboard.h"
#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Qt/Frame/CustomViewWidget.h"
#include "Tests/FrameConformance/FrameUnderTest.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

Qt::KeyboardModifiers qtModifiers(std::uint64_t flags) {
  Qt::KeyboardModifiers modifiers;
  if ((flags & modifierFlag::control) != 0) modifiers |= Qt::ControlModifier;
  if ((flags & modifierFlag::option) != 0) modifiers |= Qt::AltModifier;
  if ((flags & modifierFlag::shift) != 0) modifiers |= Qt::ShiftModifier;
  if ((flags & modifierFlag::command) != 0) modifiers |= Qt::MetaModifier;
  return modifiers;
}

class QtFrameUnderTest : public FrameUnderTest {
 public:
  QtFrameUnderTest() {
    QtBench::drop();
    QtBench::shared();
  }
  ~QtFrameUnderTest() override {
    otherWindow.reset();
    QtBench::drop();
  }
  QtFrameUnderTest(const QtFrameUnderTest&) = delete;
  QtFrameUnderTest& operator=(const QtFrameUnderTest&) = delete;

  Frame& frame() override { return bench().frame(); }
  Runtime& runtime() override { return bench().runtime(); }
  void pass(double seconds) override {
    bool isOver = false;
    runtime().after(fromSeconds(seconds), [&isOver] { isOver = true; });
    EXPECT_TRUE(bench().runUntil([&] { return isOver; }));
  }
  void change(Appearance appearance) override { bench().appearance().turn(appearance); }

  /// Without a screen Qt has no accessibility bus: this is what a screen reader would find there.
  std::vector<std::string> heard() override {
    std::vector<std::string> texts;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
      const auto* const hud = QAccessible::queryAccessibleInterface(widget);
      const auto* const part = hud == nullptr ? nullptr : hud->child(0);
      if (part == nullptr || part->role() != QAccessible::Notification) continue;
      const QString text = part->text(QAccessible::Name);
      if (!text.isEmpty() && text != said) texts.push_back(text.toStdString());
      if (!text.isEmpty()) said = text;
    }
    return texts;
  }

  void openMenu() override {
    menu().open({40, 40});
    bench().settle();
  }
  void closeMenu() override { QTest::keyClick(&menu().widget(), Qt::Key_Escape); }
  void choose(const std::string& title) override {
    QMenu& widget = menu().widget();
    for (QAction* const action : widget.actions()) {
      if (action->text().toStdString() != title) continue;
      QTest::mouseClick(&widget, Qt::LeftButton, {}, widget.actionGeometry(action).center());
      return;
    }
    ADD_FAILURE() << "no item " << title;
  }
  void drag(std::size_t slider, double value) override {
    bench().settle();
    auto* const control = menu().widget().findChildren<QSlider*>().at(static_cast<int>(slider));
    control->setValue(static_cast<int>(value * control->maximum() / 100));
  }

  void click(const std::string& label) override {
    for (CustomViewWidget* const field : shown<CustomViewWidget>()) {
      if (field->accessibleName().toStdString() != label) continue;
      QTest::mouseClick(field, Qt::LeftButton);
      return;
    }
    ADD_FAILURE() << "no field " << label;
  }
  void press(const KeyPress& key) override {
    const auto code = evdevCodeOfKey(key.keyCode);
    ASSERT_TRUE(code.has_value());
    QKeyEvent event(QEvent::KeyPress, Qt::Key_F5, qtModifiers(key.modifierFlags),
                    *code + firstXKeyCode, 0, 0);
    QWidget* const window = editor();
    QWidget* const focused = window->focusWidget();
    QApplication::sendEvent(focused != nullptr ? focused : window, &event);
  }
  void pressButton(const std::string& title) override {
    for (QPushButton* const button : shown<QPushButton>()) {
      if (button->text().toStdString() != title) continue;
      QTest::mouseClick(button, Qt::LeftButton);
      return;
    }
    ADD_FAILURE() << "no button " << title;
  }
  void closeEditor() override { editor()->close(); }
  void leaveEditor() override {
    ASSERT_TRUE(QTest::qWaitForWindowActive(editor(), patienceMilliseconds));
    otherWindow = std::make_unique<QWidget>();
    otherWindow->show();
    otherWindow->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(otherWindow.get(), patienceMilliseconds));
  }

 private:
  static QtBench& bench() { return QtBench::shared(); }
  /// The menu that the test has made last.
  QtMenu& menu() { return bench().frame().statusItem()->menu(); }

  static QWidget* editor() {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible() && widget->windowTitle() == "Editor") return widget;
    }
    throw std::runtime_error("no editor is shown");
  }

  template <typename Widget>
  std::vector<Widget*> shown() {
    std::vector<Widget*> found;
    for (QWidget* const child : editor()->findChildren<QWidget*>()) {
      auto* const widget = dynamic_cast<Widget*>(child);
      if (widget != nullptr && widget->isVisible()) found.push_back(widget);
    }
    return found;
  }

  /// What was heard last.
  QString said;
  std::unique_ptr<QWidget> otherWindow;
};

}  // namespace

std::unique_ptr<FrameUnderTest> makeFrameUnderTest() {
  return std::make_unique<QtFrameUnderTest>();
}

}  // namespace brivane
