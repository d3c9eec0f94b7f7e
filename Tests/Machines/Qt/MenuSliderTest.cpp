// The menu's sliders, by mouse and keyboard.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QWidgetAction>

#include "Tests/Machines/Qt/MenuTest.h"

namespace brivane {
namespace {

using testing::ElementsAre;

struct MenuSliderTest : MenuTest {};

TEST_F(MenuSliderTest, TheKeyOfACommandChoosesItFromTheSliderToo) {
  open();
  press(Qt::Key_Down);
  ASSERT_EQ(QApplication::focusWidget(), &slider());
  press(Qt::Key_Q);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed", "quit"));
}

TEST_F(MenuSliderTest, ByKeyboardTheSliderIsReachedFirstMovedSidewaysAndLeft) {
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

TEST_F(MenuSliderTest, EscapeClosesItFromTheSliderToo) {
  open();
  press(Qt::Key_Down);
  press(Qt::Key_Escape);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

TEST_F(MenuSliderTest, TheUsersMovesAreReportedAndTheProgramsAreNot) {
  open();
  menu.setSliderValue(1, 33);
  EXPECT_EQ(menu.sliderValue(1), 33);
  EXPECT_THAT(values, testing::IsEmpty());
  slider().setValue(0);
  EXPECT_THAT(values, ElementsAre(0));
  EXPECT_EQ(menu.sliderValue(1), 0);
}

TEST_F(MenuSliderTest, ARebuildEndsADragAndTheOldSliderReportsNothingMore) {
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

TEST_F(MenuSliderTest, ByMouseTheHandleFollowsThePointer) {
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

TEST_F(MenuSliderTest, TheReleaseAfterADragOfAReplacedSliderChoosesNothing) {
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

TEST_F(MenuSliderTest, ChangesInPlaceDoNotEndADrag) {
  open();
  const int middle = slider().height() / 2;
  QTest::mousePress(&slider(), Qt::LeftButton, {}, {slider().width() / 2 + 60, middle});
  menu.setTitle(0, "Halden H27: 137 %, a good deal longer than the line was when the menu opened");
  menu.setTitle(4, "F5 brightens");
  menu.setChecked(6, false);
  bench.settle();
  EXPECT_TRUE(slider().isSliderDown());
  QTest::mouseMove(&slider(), {-500, middle});
  EXPECT_EQ(values.back(), -100);
  QTest::mouseRelease(&slider(), Qt::LeftButton, {}, {-500, middle});
  EXPECT_TRUE(menu.widget().isVisible());
}

TEST_F(MenuSliderTest, ATitleThatGrowsDuringADragChangesNoLevelAndIsShownWholeAfterwards) {
  const QRect screen = menu.widget().screen()->availableGeometry();
  menu.open(screen.bottomRight());
  bench.settle();
  const QPoint hand = slider().mapToGlobal(slider().rect().center() + QPoint(60, 0));
  QTest::mousePress(&slider(), Qt::LeftButton, {}, slider().mapFromGlobal(hand));
  const double level = values.back();
  menu.setTitle(2, "Norvik 24, no answer for a long time, which takes many words");
  bench.settle();
  QTest::mouseMove(&slider(), slider().mapFromGlobal(hand + QPoint(1, 0)));
  EXPECT_NEAR(values.back(), level, 3);
  QTest::mouseRelease(&slider(), Qt::LeftButton, {}, slider().mapFromGlobal(hand));
  const QWidget& row = *dynamic_cast<QWidgetAction&>(action(2)).defaultWidget();
  EXPECT_GE(row.width(), row.sizeHint().width());
  EXPECT_TRUE(screen.contains(menu.widget().geometry()));
}

TEST_F(MenuSliderTest, ChangesInPlaceKeepTheSlidersFocus) {
  open();
  press(Qt::Key_Down);
  menu.setTitle(0, "Halden H27: 61 %");
  menu.setChecked(6, false);
  bench.settle();
  EXPECT_EQ(menu.widget().activeAction(), &action(1));
  EXPECT_EQ(QApplication::focusWidget(), &slider());
}

TEST_F(MenuSliderTest, ARebuildKeepsTheSlidersFocus) {
  open();
  press(Qt::Key_Down);
  menu.setItems(items());
  bench.settle();
  EXPECT_EQ(QApplication::focusWidget(), &slider());
  press(Qt::Key_Right);
  EXPECT_THAT(values, ElementsAre(61));
}

TEST_F(MenuSliderTest, AnotherSliderDoesNotInheritTheFocus) {
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

TEST_F(MenuSliderTest, AssistiveTechnologyReadsTheLevelOfASliderWithinItsBounds) {
  QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(&slider());
  ASSERT_NE(read->valueInterface(), nullptr);
  EXPECT_EQ(read->valueInterface()->minimumValue().toInt(), -100);
  EXPECT_EQ(read->valueInterface()->maximumValue().toInt(), 200);
  EXPECT_EQ(read->valueInterface()->currentValue().toInt(), 60);
  menu.setSliderValue(1, -33);
  EXPECT_EQ(read->valueInterface()->currentValue().toInt(), -33);
}

}  // namespace
}  // namespace brivane
