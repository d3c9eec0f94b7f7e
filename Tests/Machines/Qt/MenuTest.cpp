// The menu of the status item, by mouse and keyboard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QSlider>
#include <QTest>
#include <QWidgetAction>

#include "Machines/Qt/Colors.h"
#include "Machines/Qt/MenuRows.h"
#include "Machines/Qt/StatusItem.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;

struct Delegate : MenuDelegate {
  void menuWillOpen() override {
    notes.emplace_back("opens");
    if (onOpen) onOpen();
  }
  void menuDidClose() override {
    notes.emplace_back("closed");
    if (onClose) onClose();
  }

  std::vector<std::string> notes;
  std::function<void()> onOpen;
  std::function<void()> onClose;
};

class MenuTest : public testing::Test {
 protected:
  MenuTest() {
    menu.setDelegate(&delegate);
    menu.setItems(items());
  }

  std::vector<MenuItem> items() {
    return {
        MenuText{"Halden H27: 60 %"},
        MenuSlider{-100, 200, 60, "Brightness of Halden H27",
                   [this](double value) { values.push_back(value); }},
        MenuText{"Norvik 24: built in", MenuTone::tertiaryLabel},
        MenuSeparator{},
        MenuText{"⌃⌥↑ brightens, ⌃⌥↓ dims", MenuTone::secondaryLabel},
        command("Change Hotkeys…"),
        MenuCommand{"Use System Brightness Keys", true, "", note("keys")},
        command("Restore & Forget"),
        MenuSeparator{},
        MenuCommand{"Quit Brivane", false, "q", note("quit")},
    };
  }

  MenuCommand command(const std::string& title) { return {title, false, "", note(title)}; }
  std::function<void()> note(const std::string& text) {
    return [this, text] { delegate.notes.push_back(text); };
  }

  void open() {
    menu.open({40, 40});
    bench.settle();
  }
  /// How opaque a letter without gaps is in a line of that tone, 0 to 255.
  int inkOfLine(MenuTone tone) {
    MenuTextRow row({"█", tone}, bench.frame().application());
    row.resize(row.sizeHint());
    QImage image(row.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    row.render(&image, {}, {}, QWidget::DrawChildren);
    int most = 0;
    for (int x = 0; x < image.width(); ++x) {
      most = std::max(most, image.pixelColor(x, image.height() / 2).alpha());
    }
    return most;
  }
  QSlider& slider(int number = 0) { return *menu.widget().findChildren<QSlider*>().at(number); }
  QAction& action(int index) { return *menu.widget().actions().at(index); }
  void press(Qt::Key key) {
    QWidget* const focused = QApplication::focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &menu.widget(), key);
  }

  QtBench& bench = QtBench::shared();
  Delegate delegate;
  std::vector<double> values;
  std::unique_ptr<StatusItem> statusItem = bench.frame().makeStatusItem();
  QtMenu& menu = dynamic_cast<QtMenu&>(statusItem->menu());
};

TEST_F(MenuTest, TheDelegateIsToldBeforeTheMenuShowsAndAfterItHasClosed) {
  delegate.onOpen = [this] { EXPECT_FALSE(menu.widget().isVisible()); };
  delegate.onClose = [this] { EXPECT_FALSE(menu.widget().isVisible()); };
  open();
  EXPECT_TRUE(menu.widget().isVisible());
  menu.open({40, 40});
  EXPECT_FALSE(menu.widget().isVisible()) << "a second click closes it";
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

TEST_F(MenuTest, TheMainQueueRunsOnWhileTheMenuIsOpen) {
  open();
  int ticks = 0;
  const TimerID timer = bench.runtime().every(std::chrono::milliseconds(5), [&] { ++ticks; });
  EXPECT_TRUE(bench.runUntil([&] { return ticks >= 3; }));
  bench.runtime().cancel(timer);
  EXPECT_TRUE(menu.widget().isVisible());
}

TEST_F(MenuTest, ACommandIsCalledAfterTheMenuHasClosed) {
  open();
  QTest::mouseClick(&menu.widget(), Qt::LeftButton, {},
                    menu.widget().actionGeometry(&action(5)).center());
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed", "Change Hotkeys…"));
}

TEST_F(MenuTest, NothingIsChosenFromItemsThatWereReplacedAsTheMenuClosed) {
  delegate.onClose = [this] { menu.setItems({command("other")}); };
  open();
  QTest::mouseClick(&menu.widget(), Qt::LeftButton, {},
                    menu.widget().actionGeometry(&action(5)).center());
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

TEST_F(MenuTest, TheKeyOfACommandChoosesIt) {
  open();
  QTest::keyClick(&menu.widget(), Qt::Key_Q);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed", "quit"));
}

TEST_F(MenuTest, TheKeyOfACommandChoosesItFromTheSliderToo) {
  open();
  press(Qt::Key_Down);
  ASSERT_EQ(QApplication::focusWidget(), &slider());
  press(Qt::Key_Q);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed", "quit"));
}

TEST_F(MenuTest, AKeyChoosesNothingFromItemsThatWereReplacedAsTheMenuClosed) {
  delegate.onClose = [this] { menu.setItems({command("other")}); };
  open();
  QTest::keyClick(&menu.widget(), Qt::Key_Q);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

TEST_F(MenuTest, AnAmpersandInTheNameOfADisplayIsNoKey) {
  auto renamed = items();
  std::get<MenuSlider>(renamed[1]).accessibilityLabel = "Brightness of R&D";
  menu.setItems(std::move(renamed));
  open();
  QTest::keyClick(&menu.widget(), Qt::Key_D);
  EXPECT_TRUE(menu.widget().isVisible());
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&slider())->text(QAccessible::Name),
            "Brightness of R&D");
}

TEST_F(MenuTest, AModifierByItselfLeavesTheMenuOpen) {
  open();
  for (const auto key : {Qt::Key_Alt, Qt::Key_Control, Qt::Key_Shift, Qt::Key_Meta}) {
    QTest::keyClick(&menu.widget(), key);
  }
  EXPECT_TRUE(menu.widget().isVisible());
}

TEST_F(MenuTest, ByKeyboardTheSliderIsReachedFirstMovedSidewaysAndLeft) {
  open();
  press(Qt::Key_Down);
  ASSERT_EQ(QApplication::focusWidget(), &slider());
  press(Qt::Key_Right);
  press(Qt::Key_Left);
  press(Qt::Key_PageUp);
  EXPECT_THAT(values, ElementsAre(61, 60, 70));
  press(Qt::Key_Down);
  EXPECT_EQ(menu.widget().activeAction(), &action(5)) << "lines to read are passed over";
  press(Qt::Key_Return);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed", "Change Hotkeys…"));
}

TEST_F(MenuTest, EscapeClosesItFromTheSliderToo) {
  open();
  press(Qt::Key_Down);
  press(Qt::Key_Escape);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

TEST_F(MenuTest, EveryMoveOfTheHandIsToldAndTheProgramsOwnAreNot) {
  open();
  menu.setSliderValue(1, 33);
  EXPECT_EQ(menu.sliderValue(1), 33);
  EXPECT_THAT(values, testing::IsEmpty());
  slider().setValue(0);
  EXPECT_THAT(values, ElementsAre(0));
  EXPECT_EQ(menu.sliderValue(1), 0);
}

TEST_F(MenuTest, ARebuildInTheMiddleOfADragEndsItAndNobodyHearsOfTheOldSlider) {
  auto again = items();
  std::get<MenuSlider>(again[1]).moved = [this](double value) {
    values.push_back(value);
    menu.setItems(items());
  };
  menu.setItems(std::move(again));
  open();
  QSlider& old = slider();
  old.setValue(50);
  EXPECT_THAT(values, ElementsAre(50));
  old.setValue(70);
  EXPECT_THAT(values, ElementsAre(50)) << "it is gone";
  bench.settle();
  EXPECT_TRUE(menu.widget().isVisible());
  EXPECT_EQ(menu.widget().findChildren<QSlider*>().size(), 1);
  EXPECT_EQ(menu.widget().actions().size(), 10);
}

TEST_F(MenuTest, ByMouseTheHandleGoesWhereTheHandIs) {
  open();
  const int middle = slider().height() / 2;
  const int half = slider().width() / 2;
  QTest::mousePress(&slider(), Qt::LeftButton, {}, {half + 60, middle});
  ASSERT_THAT(values, testing::SizeIs(1)) << "a click beside the handle moves it at once";
  EXPECT_NEAR(values.back(), 137, 3);
  QTest::mouseMove(&slider(), {half, middle});
  EXPECT_NEAR(values.back(), 50, 3);
  QTest::mouseMove(&slider(), {-500, middle});
  EXPECT_EQ(values.back(), -100);
  QTest::mouseRelease(&slider(), Qt::LeftButton, {}, {-500, middle});
  EXPECT_EQ(menu.sliderValue(1), -100);
  EXPECT_TRUE(menu.widget().isVisible());
}

TEST_F(MenuTest, TheHandThatDragsASliderAwayFromUnderItChoosesNothingAsItLetsGo) {
  open();
  QTest::mousePress(&slider(), Qt::LeftButton, {}, slider().rect().center());
  values.clear();
  menu.setItems(items());
  bench.settle();
  const QPoint quit = menu.widget().actionGeometry(&action(9)).center();
  QTest::mouseMove(&menu.widget(), quit);
  QTest::mouseRelease(&menu.widget(), Qt::LeftButton, {}, quit);
  EXPECT_THAT(values, testing::IsEmpty());
  EXPECT_THAT(delegate.notes, ElementsAre("opens"));
}

TEST_F(MenuTest, ARebuildLeavesTheKeysWithTheSliderThatHadThem) {
  open();
  press(Qt::Key_Down);
  menu.setItems(items());
  bench.settle();
  EXPECT_EQ(QApplication::focusWidget(), &slider());
  press(Qt::Key_Right);
  EXPECT_THAT(values, ElementsAre(61));
}

TEST_F(MenuTest, AnotherSliderDoesNotInheritTheKeys) {
  auto two = items();
  two.insert(two.begin() + 2, items()[1]);
  menu.setItems(std::move(two));
  open();
  press(Qt::Key_Down);
  auto without = items();
  without[1] = MenuText{"Halden H27: no answer"};
  without.push_back(items()[1]);
  menu.setItems(std::move(without));
  bench.settle();
  EXPECT_FALSE(slider().hasFocus());
}

TEST_F(MenuTest, AMenuThatOpensLongerThanItWasHasNothingSelected) {
  delegate.onOpen = [this] {
    auto more = items();
    more.push_back(command("more"));
    menu.setItems(std::move(more));
  };
  open();
  EXPECT_EQ(menu.widget().activeAction(), nullptr);
}

TEST_F(MenuTest, ARebuildKeepsTheLineThatWasSelected) {
  open();
  menu.widget().setActiveAction(&action(6));
  menu.setItems(items());
  EXPECT_EQ(menu.widget().activeAction(), &action(6));
}

TEST_F(MenuTest, ARebuildThatAddsLinesSelectsNone) {
  open();
  auto more = items();
  more.push_back(command("more"));
  menu.setItems(std::move(more));
  EXPECT_EQ(menu.widget().activeAction(), nullptr);
}

TEST_F(MenuTest, WhileItsLinesAreReplacedTheMenuKeepsItsSize) {
  struct Resizes : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Resize) ++count;
      return false;
    }
    int count = 0;
  } resizes;
  open();
  menu.widget().installEventFilter(&resizes);
  menu.setItems(items());
  bench.settle();
  EXPECT_EQ(resizes.count, 0) << "an X server would show each";
  auto more = items();
  more.push_back(command("more"));
  menu.setItems(std::move(more));
  bench.settle();
  EXPECT_EQ(resizes.count, 1);
}

TEST_F(MenuTest, OnlyWhatIsTickedShowsATick) {
  EXPECT_TRUE(action(6).isChecked());
  EXPECT_FALSE(action(5).isCheckable());
  menu.setChecked(6, false);
  EXPECT_FALSE(action(6).isCheckable());
  menu.setChecked(6, true);
  EXPECT_TRUE(action(6).isChecked());
}

TEST_F(MenuTest, ChoosingATickedCommandLeavesTheTickToTheProgram) {
  action(6).trigger();
  EXPECT_TRUE(action(6).isChecked());
  EXPECT_THAT(delegate.notes, ElementsAre("keys"));
}

TEST_F(MenuTest, TitlesChangeInPlace) {
  menu.setTitle(0, "Halden H27: 61 %");
  menu.setTitle(5, "Hotkeys");
  EXPECT_EQ(action(0).text(), "Halden H27: 61 %");
  EXPECT_EQ(action(5).text(), "Hotkeys");
  EXPECT_EQ(action(7).text(), "Restore && Forget") << "an ampersand is one";
}

TEST_F(MenuTest, ATitleThatGrowsInAnOpenMenuIsShownWhole) {
  open();
  menu.setTitle(0, "Halden H27 on the left of the desk: 100 %");
  bench.settle();
  const QWidget& row = *dynamic_cast<QWidgetAction&>(action(0)).defaultWidget();
  EXPECT_GE(row.width(), row.sizeHint().width());
}

TEST_F(MenuTest, AssistiveTechnologyReadsTheLevelOfASliderWithinItsBounds) {
  QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(&slider());
  ASSERT_NE(read->valueInterface(), nullptr);
  EXPECT_EQ(read->valueInterface()->minimumValue().toInt(), -100);
  EXPECT_EQ(read->valueInterface()->maximumValue().toInt(), 200);
  EXPECT_EQ(read->valueInterface()->currentValue().toInt(), 60);
  menu.setSliderValue(1, -33);
  EXPECT_EQ(read->valueInterface()->currentValue().toInt(), -33);
}

TEST_F(MenuTest, WhatAssistiveTechnologyReadsIsThere) {
  EXPECT_EQ(slider().accessibleName(), "Brightness of Halden H27");
  const auto* const text = dynamic_cast<QWidgetAction*>(&action(0));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->defaultWidget()->accessibleName(), "Halden H27: 60 %");
  EXPECT_FALSE(action(0).isEnabled());
}

TEST_F(MenuTest, ALineToReadHasTheColourOfItsTone) {
  const std::vector<std::pair<MenuTone, SystemColor>> tones = {
      {MenuTone::label, SystemColor::label},
      {MenuTone::secondaryLabel, SystemColor::secondaryLabel},
      {MenuTone::tertiaryLabel, SystemColor::tertiaryLabel}};
  for (const auto appearance : {Appearance::dark, Appearance::light}) {
    bench.appearance().turn(appearance);
    for (const auto& [tone, color] : tones) {
      EXPECT_NEAR(inkOfLine(tone), resolvedColor(SystemPaint{color}, appearance).alpha(), 1);
    }
  }
}

TEST_F(MenuTest, ALongNameLosesItsMiddleAndKeepsItsLevel) {
  auto longer = items();
  const std::string name(200, 'm');
  std::get<MenuText>(longer[0]).title = name + ": 60 %";
  menu.setItems(std::move(longer));
  open();
  EXPECT_LT(menu.widget().width(), 450);
  EXPECT_EQ(dynamic_cast<QWidgetAction&>(action(0)).defaultWidget()->toolTip().toStdString(),
            name + ": 60 %");
  expectGoldenPicture("menu-long-name", menu.widget().grab().toImage());
}

TEST_F(MenuTest, AMenuThatGrowsStaysOnTheScreen) {
  menu.open({40, 560});
  bench.settle();
  auto more = items();
  for (int extra = 0; extra < 12; ++extra) more.push_back(command("more"));
  menu.setItems(std::move(more));
  const QRect screen = menu.widget().screen()->availableGeometry();
  EXPECT_TRUE(screen.contains(menu.widget().geometry()));
}

TEST_F(MenuTest, AStatusItemThatGoesClosesItsMenu) {
  open();
  statusItem.reset();
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

TEST_F(MenuTest, ItLooksAsItDidWhenSomebodyLookedAtIt) {
  open();
  expectGoldenPicture("menu-light", menu.widget().grab().toImage());
  bench.appearance().turn(Appearance::dark);
  bench.settle();
  expectGoldenPicture("menu-dark", menu.widget().grab().toImage());
  bench.appearance().turn(Appearance::light);
}

}  // namespace
}  // namespace brivane
