// The status item's menu: opening, closing, choosing.
#include "Tests/Machines/Qt/MenuTest.h"

#include <gmock/gmock.h>

#include <QAccessible>

namespace brivane {
namespace {

using testing::ElementsAre;

TEST_F(MenuTest, TheDelegateIsNotifiedBeforeTheMenuShowsAndAfterItHasClosed) {
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

TEST_F(MenuTest, AKeyChoosesNothingFromItemsThatWereReplacedAsTheMenuClosed) {
  delegate.onClose = [this] { menu.setItems({command("other")}); };
  open();
  QTest::keyClick(&menu.widget(), Qt::Key_Q);
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

TEST_F(MenuTest, ToAssistiveTechnologyASliderIsWithinItsItem) {
  open();
  const auto accessible = [](QObject& object) {
    return QAccessible::queryAccessibleInterface(&object);
  };
  const auto* const shown = accessible(menu.widget());
  const auto* const item = shown->child(1);
  EXPECT_EQ(item->role(), QAccessible::MenuItem);
  EXPECT_EQ(item->text(QAccessible::Name), "Brightness of Halden H27");
  EXPECT_EQ(shown->indexOfChild(item), 1);
  EXPECT_FALSE(item->state().focused);
  press(Qt::Key_Down);
  EXPECT_TRUE(item->state().focused);
  ASSERT_EQ(item->childCount(), 1);
  auto* const found = item->child(0)->child(0);
  EXPECT_EQ(found, accessible(slider()));
  EXPECT_EQ(found->role(), QAccessible::Slider);
  EXPECT_EQ(found->parent()->parent(), item);
  EXPECT_EQ(item->indexOfChild(found->parent()), 0);
  EXPECT_EQ(item->parent(), shown);
  EXPECT_TRUE(item->rect().contains(found->rect()));
  found->valueInterface()->setCurrentValue(61);
  EXPECT_THAT(values, ElementsAre(61));
  EXPECT_EQ(shown->child(3)->role(), QAccessible::Separator);
  EXPECT_EQ(shown->child(3)->childCount(), 0);
}

TEST_F(MenuTest, ToAssistiveTechnologyARowThatLeftTheMenuIsInNoItem) {
  open();
  const auto* const row = QAccessible::queryAccessibleInterface(&slider())->parent();
  EXPECT_EQ(row->parent()->role(), QAccessible::MenuItem);
  menu.setItems({command("other")});
  EXPECT_EQ(row->parent(), QAccessible::queryAccessibleInterface(qApp));
}

TEST_F(MenuTest, AnAmpersandInTheNameOfADisplayIsNoMnemonic) {
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

TEST_F(MenuTest, AMenuThatGetsMoreItemsAsItOpensHasNoSelection) {
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

TEST_F(MenuTest, DestroyingTheStatusItemClosesItsMenu) {
  open();
  statusItem.reset();
  EXPECT_THAT(delegate.notes, ElementsAre("opens", "closed"));
}

}  // namespace
}  // namespace brivane
