// The looks of the menu's lines, and the menu's size.
#include <gmock/gmock.h>

#include <QWidgetAction>

#include "Machines/Qt/Frame/MenuRows.h"
#include "Machines/Qt/Toolkit/Colors.h"
#include "Tests/Machines/Qt/MenuTest.h"

namespace brivane {
namespace {

using testing::ElementsAre;

struct MenuLooksTest : MenuTest {
  /// The opacity of a letter without gaps in a line of that tone, 0 to 255.
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
};

TEST_F(MenuLooksTest, WhileItsLinesAreReplacedTheMenuKeepsItsSize) {
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

TEST_F(MenuLooksTest, OnlyATickedCommandShowsATick) {
  EXPECT_TRUE(action(6).isChecked());
  EXPECT_FALSE(action(5).isCheckable());
  menu.setChecked(6, false);
  EXPECT_FALSE(action(6).isCheckable());
  menu.setChecked(6, true);
  EXPECT_TRUE(action(6).isChecked());
}

TEST_F(MenuLooksTest, ChoosingATickedCommandLeavesTheTickToTheProgram) {
  action(6).trigger();
  EXPECT_TRUE(action(6).isChecked());
  EXPECT_THAT(delegate.notes, ElementsAre("keys"));
}

TEST_F(MenuLooksTest, TitlesChangeInPlace) {
  menu.setTitle(0, "Halden H27: 61 %");
  menu.setTitle(5, "Hotkeys");
  EXPECT_EQ(action(0).text(), "Halden H27: 61 %");
  EXPECT_EQ(action(5).text(), "Hotkeys");
  EXPECT_EQ(action(7).text(), "Restore && Forget") << "an ampersand is one";
}

TEST_F(MenuLooksTest, ATitleThatGrowsInAnOpenMenuIsShownWhole) {
  open();
  menu.setTitle(0, "Halden H27 on the left of the desk: 100 %");
  bench.settle();
  const QWidget& row = *dynamic_cast<QWidgetAction&>(action(0)).defaultWidget();
  EXPECT_GE(row.width(), row.sizeHint().width());
}

TEST_F(MenuLooksTest, SlidersAndTextLinesHaveAccessibleNames) {
  EXPECT_EQ(slider().accessibleName(), "Brightness of Halden H27");
  const auto* const text = dynamic_cast<QWidgetAction*>(&action(0));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->defaultWidget()->accessibleName(), "Halden H27: 60 %");
  EXPECT_FALSE(action(0).isEnabled());
}

TEST_F(MenuLooksTest, ATextLineHasTheColourOfItsTone) {
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

TEST_F(MenuLooksTest, ALongNameIsElidedBeforeItsLevel) {
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

TEST_F(MenuLooksTest, AMenuThatGrowsStaysOnTheScreen) {
  menu.open({40, 560});
  bench.settle();
  auto more = items();
  for (int extra = 0; extra < 12; ++extra) more.push_back(command("more"));
  menu.setItems(std::move(more));
  const QRect screen = menu.widget().screen()->availableGeometry();
  EXPECT_TRUE(screen.contains(menu.widget().geometry()));
}

TEST_F(MenuLooksTest, AMenuWithATitleThatGrowsStaysOnTheScreen) {
  const QRect screen = menu.widget().screen()->availableGeometry();
  menu.open(screen.bottomRight());
  bench.settle();
  const int width = menu.widget().width();
  for (const std::size_t index : {0U, 5U}) {
    menu.setTitle(index, "Halden H27 on the left of the desk: 100 %");
    EXPECT_GT(menu.widget().width(), width);
    EXPECT_TRUE(screen.contains(menu.widget().geometry())) << index;
    menu.setTitle(index, "Halden H27");
  }
}

TEST_F(MenuLooksTest, AMenuThatDoesNotGrowStaysWhereItOpenedEvenOverAPanel) {
  open();
  const QPoint place(40, menu.widget().screen()->availableGeometry().bottom() - 60);
  menu.widget().move(place);
  menu.setTitle(0, "Halden H27: 61 %");
  menu.setItems(items());
  EXPECT_EQ(menu.widget().pos(), place);
}

TEST_F(MenuLooksTest, LooksLikeItsGoldenPictures) {
  open();
  expectGoldenPicture("menu-light", menu.widget().grab().toImage());
  bench.appearance().turn(Appearance::dark);
  bench.settle();
  expectGoldenPicture("menu-dark", menu.widget().grab().toImage());
  bench.appearance().turn(Appearance::light);
}

}  // namespace
}  // namespace brivane
