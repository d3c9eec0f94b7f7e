// A simulated machine with its monitors as windows, on an offscreen screen of 800 by 800.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QKeyEvent>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Qt/Frame/HUDWindow.h"
#include "Machines/Qt/LiveDesk/DeskWindows.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

constexpr std::uint16_t upKey = 126;
constexpr std::uint16_t control = 59;
constexpr std::uint16_t option = 58;

class DeskWindowsTest : public testing::Test {
 public:
  DeskWindowsTest() { bench.settle(); }
  ~DeskWindowsTest() override { QtBench::drop(); }
  DeskWindowsTest(const DeskWindowsTest&) = delete;
  DeskWindowsTest& operator=(const DeskWindowsTest&) = delete;

 protected:
  MonitorWindow* window(DisplayID display) { return bench.frame().desk()->window(display); }
  DeskPanel& panel() { return bench.frame().desk()->panel(); }

  /// At the middle of the bar of full red, 0 to 255.
  static int redOf(MonitorWindow& window) {
    const QRect box = window.pictureBox();
    const QImage image = window.grab().toImage();
    const QPoint place(box.x() + box.width() / 12, box.y() + box.height() * 84 / 100);
    return qRed(image.pixel(place));
  }

  static QPushButton* button(QWidget& parent, const QString& title) {
    for (auto* const one : parent.findChildren<QPushButton*>()) {
      if (one->isVisible() && one->text() == title) return one;
    }
    ADD_FAILURE() << "no button " << title.toStdString();
    return nullptr;
  }
  static QComboBox* choice(QWidget& parent, const QString& name) {
    for (auto* const one : parent.findChildren<QComboBox*>()) {
      if (one->isVisible() && one->accessibleName() == name) return one;
    }
    ADD_FAILURE() << "no choice " << name.toStdString();
    return nullptr;
  }

  static void send(QEvent::Type type, MonitorWindow& to, std::uint16_t keyCode,
                   bool isRepeat = false) {
    QKeyEvent event(type, 0, {}, *evdevCodeOfKey(keyCode) + firstXKeyCode, 0, 0, {}, isRepeat);
    QApplication::sendEvent(to.windowHandle(), &event);
  }
  static void moveMouse(MonitorWindow& over, QPointF place) {
    QMouseEvent event(QEvent::MouseMove, place, over.mapToGlobal(place), Qt::NoButton, {}, {});
    QApplication::sendEvent(over.windowHandle(), &event);
  }

  QtBench& bench =
      QtBench::renewed({.pixelsPerPoint = 1, .sessionBus = {}, .deskText = R"({"displays": [
      {"identifier": 1, "builtIn": true, "name": "Built-in Display", "headroom": 2,
       "frame": {"x": 0, "y": 0, "width": 1500, "height": 1000}},
      {"identifier": 2, "name": "Halden H27", "firmware": {"level": 20},
       "frame": {"x": 1500, "y": 0, "width": 1500, "height": 1000}}],
      "pointer": {"x": 10, "y": 10}})"});
  DeskHardware& hardware = bench.machine().hardware();
};

TEST_F(DeskWindowsTest, EachMonitorHasAWindowAtItsPlaceAndThePanelIsAboveThem) {
  ASSERT_NE(window(1), nullptr);
  ASSERT_NE(window(2), nullptr);
  EXPECT_TRUE(window(2)->isVisible());
  EXPECT_EQ(window(2)->windowTitle(), "[2] Halden H27");
  EXPECT_EQ(window(1)->y(), window(2)->y());
  EXPECT_NEAR(window(1)->x() + window(1)->width() + 4, window(2)->x(), 1);
  EXPECT_EQ(window(1)->width(), window(2)->width());
  EXPECT_TRUE(panel().isVisible());
  EXPECT_LT(panel().geometry().bottom(), window(2)->y());
}

TEST_F(DeskWindowsTest, ThePictureFollowsTheLevelAndTheGammaTable) {
  const int before = redOf(*window(2));
  hardware.monitors.setLevelByButtons(2, 100);
  EXPECT_TRUE(bench.runUntil([&] { return redOf(*window(2)) > before; }));
  hardware.gamma.setTable(2, {GammaCurve{0, 0}, GammaCurve{0, 1}, GammaCurve{0, 1}});
  EXPECT_TRUE(bench.runUntil([&] { return redOf(*window(2)) == 0; }));
}

TEST_F(DeskWindowsTest, ClosingUnplugsAndThePanelPlugsInAgainAtTheSamePlace) {
  const QRect before = window(2)->geometry();
  window(2)->close();
  EXPECT_TRUE(bench.runUntil([&] { return window(2) == nullptr; }));
  EXPECT_EQ(hardware.displays.find(2), nullptr);
  QTest::mouseClick(button(panel(), "Plug In [2] Halden H27"), Qt::LeftButton);
  EXPECT_TRUE(bench.runUntil([&] { return window(2) != nullptr && window(2)->isVisible(); }));
  EXPECT_NE(hardware.displays.find(2), nullptr);
  EXPECT_EQ(window(2)->geometry(), before);
}

TEST_F(DeskWindowsTest, TheCloseButtonUnplugsAsWell) {
  auto* const cross = window(2)->findChild<QToolButton*>();
  ASSERT_NE(cross, nullptr);
  EXPECT_EQ(cross->accessibleName(), "Unplug");
  QTest::mouseClick(cross, Qt::LeftButton);
  EXPECT_TRUE(bench.runUntil([&] { return hardware.displays.find(2) == nullptr; }));
}

TEST_F(DeskWindowsTest, DraggingAWindowRearrangesTheDisplays) {
  const QPoint from = window(2)->pictureBox().center();
  const QPoint before = window(2)->pos();
  QTest::mousePress(window(2), Qt::LeftButton, {}, from);
  QTest::mouseMove(window(2), from + QPoint(0, 90));
  EXPECT_EQ(window(2)->pos(), before + QPoint(0, 90));
  EXPECT_EQ(hardware.displays.find(2)->frame.y, 0) << "on its way";
  QTest::mouseRelease(window(2), Qt::LeftButton, {}, from);
  EXPECT_LT(hardware.displays.find(2)->frame.y, -200);
  bench.settle();
  EXPECT_EQ(window(2)->pos(), before + QPoint(0, 90));
  EXPECT_EQ(window(2)->size(), window(1)->size());
}

TEST_F(DeskWindowsTest, AClickRearrangesNothingWhereverTheWindowIs) {
  const QPoint before = window(2)->pos();
  const Rect frame{1500, -400, 1500, 1000};
  hardware.changes.setFrame(2, frame);
  EXPECT_TRUE(bench.runUntil([&] { return window(2)->pos() != before; }));
  // As a window manager does.
  window(2)->move(window(2)->pos() + QPoint(0, 20));
  QTest::mouseClick(window(2), Qt::LeftButton, {}, window(2)->pictureBox().center());
  EXPECT_EQ(hardware.displays.find(2)->frame, frame);
}

TEST_F(DeskWindowsTest, AWindowThatIsHeldButNotDraggedFollowsARearrangementAfterwards) {
  const QPoint before = window(2)->pos();
  const QPoint place = window(2)->pictureBox().center();
  QTest::mousePress(window(2), Qt::LeftButton, {}, place);
  hardware.changes.setFrame(2, {1500, -400, 1500, 1000});
  bench.settle();
  EXPECT_EQ(window(2)->pos(), before) << "not out of anybody's hand";
  QTest::mouseRelease(window(2), Qt::LeftButton, {}, place);
  EXPECT_GT(window(2)->y(), before.y() + 80);
  EXPECT_EQ(hardware.displays.find(2)->frame, (Rect{1500, -400, 1500, 1000}));
}

TEST_F(DeskWindowsTest, AWindowManagersMoveRearrangesTheDisplaysOnceItIsOver) {
  QTest::qWait(500);
  int notices = 0;
  const auto observation =
      hardware.events.observe<HardwareNotice>([&](HardwareNotice) { ++notices; });
  for (int i = 0; i < 5; ++i) window(2)->move(window(2)->pos() + QPoint(0, 20));
  EXPECT_EQ(notices, 0);
  EXPECT_TRUE(bench.runUntil([&] { return hardware.displays.find(2)->frame.y < -200; }));
  QTest::qWait(600);
  EXPECT_EQ(notices, 1) << "the window doesn't answer its own change";
}

TEST_F(DeskWindowsTest, ARearrangementFromElsewhereMovesTheWindowAndIsNotReportedBack) {
  int notices = 0;
  const auto observation =
      hardware.events.observe<HardwareNotice>([&](HardwareNotice) { ++notices; });
  const QPoint before = window(2)->pos();
  hardware.changes.setFrame(2, {1500, -400, 1500, 1000});
  EXPECT_TRUE(bench.runUntil([&] { return window(2)->y() > before.y() + 80; }));
  QTest::qWait(700);
  EXPECT_EQ(notices, 1);
  EXPECT_EQ(hardware.displays.find(2)->frame, (Rect{1500, -400, 1500, 1000}));
}

TEST_F(DeskWindowsTest, TheHUDOfADisplayIsOverItsWindowInItsOwnSize) {
  const auto made =
      bench.frame().makeHUDWindow({.contentRect = {0, 0, 360, 54}, .level = statusWindowLevel});
  auto& hud = dynamic_cast<QtHUDWindow&>(*made);
  hud.setFrame({1500 + 750 - 180, 130, 360, 54});
  hud.orderFrontRegardless();
  const QRect box = hud.widget().geometry();
  const QRect picture = window(2)->pictureBox().translated(window(2)->pos());
  EXPECT_EQ(box.size(), QSize(360, 54));
  EXPECT_NEAR(box.center().x(), picture.center().x(), 1);
  EXPECT_LT(box.bottom(), picture.bottom());
  EXPECT_GT(box.bottom(), picture.center().y());
}

TEST_F(DeskWindowsTest, AHUDThatWouldHangOverTheEdgeIsKeptOnTheScreen) {
  const auto made =
      bench.frame().makeHUDWindow({.contentRect = {0, 0, 360, 54}, .level = statusWindowLevel});
  auto& hud = dynamic_cast<QtHUDWindow&>(*made);
  hardware.changes.setFrame(1, {-3000, 0, 1500, 1000});
  EXPECT_TRUE(bench.runUntil([&] { return window(1)->width() < 200; }));
  hud.setFrame({-3000 + 750 - 180, 130, 360, 54});
  hud.orderFrontRegardless();
  EXPECT_GE(hud.widget().x(), 0);
}

TEST_F(DeskWindowsTest, KeysGoDownAndUpOnTheDeskWithoutTheirRepeats) {
  std::vector<HotkeyEvent> reported;
  auto& machine = bench.machine();
  machine.hotkeys().installHandler([&](HotkeyEvent event, HotkeyID) { reported.push_back(event); });
  machine.hotkeys().registerHotkey(upKey, 4096 + 2048, {1, 1});
  send(QEvent::KeyPress, *window(2), control);
  send(QEvent::KeyPress, *window(2), option);
  send(QEvent::KeyPress, *window(2), upKey);
  send(QEvent::KeyRelease, *window(2), upKey, true);
  send(QEvent::KeyPress, *window(2), upKey, true);
  EXPECT_TRUE(machine.keyboard().isKeyDown(upKey));
  EXPECT_THAT(reported, testing::ElementsAre(HotkeyEvent::pressed));
  send(QEvent::KeyRelease, *window(2), upKey);
  send(QEvent::KeyRelease, *window(2), option);
  send(QEvent::KeyRelease, *window(2), control);
  EXPECT_THAT(reported, testing::ElementsAre(HotkeyEvent::pressed, HotkeyEvent::released));
  EXPECT_EQ(machine.keyboard().modifierFlags(), 0u);
}

TEST_F(DeskWindowsTest, HeldKeysAreReleasedWhenTheFocusIsLost) {
  send(QEvent::KeyPress, *window(2), control);
  EXPECT_TRUE(bench.machine().keyboard().isKeyDown(control));
  Q_EMIT qGuiApp->focusWindowChanged(nullptr);
  EXPECT_FALSE(bench.machine().keyboard().isKeyDown(control));
}

TEST_F(DeskWindowsTest, ABrightnessKeyReachesTheDesksBuiltInPanel) {
  QKeyEvent down(QEvent::KeyPress, Qt::Key_MonBrightnessUp, {}, 233, 0, 0);
  QApplication::sendEvent(window(2)->windowHandle(), &down);
  QKeyEvent up(QEvent::KeyRelease, Qt::Key_MonBrightnessUp, {}, 233, 0, 0);
  QApplication::sendEvent(window(2)->windowHandle(), &up);
  EXPECT_FLOAT_EQ(*hardware.panels.level(1), 0.5625F);
}

TEST_F(DeskWindowsTest, ThePointerIsReportedBeforeAKey) {
  const QRect picture = window(2)->pictureBox();
  moveMouse(*window(2), QRectF(picture).center());
  send(QEvent::KeyPress, *window(2), upKey);
  const Point pointer = hardware.system.pointer();
  EXPECT_NEAR(pointer.x, 2250, 2);
  EXPECT_NEAR(pointer.y, 500, 2);
  send(QEvent::KeyRelease, *window(2), upKey);
  moveMouse(*window(1), {20, static_cast<double>(window(1)->height() - 2)});
  EXPECT_TRUE(bench.runUntil([&] { return hardware.system.pointer().x < 1500; }));
  EXPECT_TRUE(mouseInRect(hardware.system.pointer(), hardware.displays.find(1)->frame))
      << "below the picture it is at its lower edge";
}

TEST_F(DeskWindowsTest, TheButtonsActOnTheirMonitorAndHaveAccessibleNames) {
  QPushButton* const brighter = button(*window(2), "+");
  ASSERT_NE(brighter, nullptr);
  EXPECT_EQ(brighter->accessibleName(), "Brighter");
  QTest::keyClick(brighter, Qt::Key_Space);
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 30);
  QComboBox* const mood = choice(*window(2), "Mood");
  ASSERT_NE(mood, nullptr);
  mood->setCurrentText("silent");
  Q_EMIT mood->activated(mood->currentIndex());
  EXPECT_EQ(hardware.monitors.state(2)->mood, MonitorMood::silent);
}

TEST_F(DeskWindowsTest, AMoodSetElsewhereIsShown) {
  QComboBox* const mood = choice(*window(2), "Mood");
  hardware.monitors.setMood(2, MonitorMood::garbled);
  EXPECT_TRUE(bench.runUntil([&] { return mood->currentText() == "garbled"; }));
}

TEST_F(DeskWindowsTest, ThePanelsButtonIsTheStatusItemAndOpensItsMenu) {
  QToolButton& shown = panel().statusButton();
  EXPECT_FALSE(shown.isEnabled());
  auto item = bench.frame().makeStatusItem();
  item->menu().setItems({MenuText{"Brightness"}});
  item->configureButton({.icon = {}, .iconWidth = 22, .iconHeight = 22, .toolTip = "Brivane"});
  EXPECT_TRUE(shown.isEnabled());
  EXPECT_EQ(shown.accessibleName(), "Brivane");
  QTest::mouseClick(&shown, Qt::LeftButton);
  QMenu& menu = bench.frame().statusItem()->menu().widget();
  EXPECT_TRUE(bench.runUntil([&] { return menu.isVisible(); }));
  EXPECT_GE(menu.y(), panel().y());
  menu.close();
  item.reset();
  EXPECT_FALSE(shown.isEnabled());
}

struct EndingDelegate : ApplicationDelegate {
  void applicationDidFinishLaunching() override {
    if (whenLaunched) whenLaunched();
  }
  void applicationWasOpenedAgain() override {}
  void applicationWillTerminate() override { ++ends; }
  Task whenLaunched;
  int ends = 0;
};

TEST_F(DeskWindowsTest, ClosingThePanelEndsTheProgramAndLeavesEveryDisplayPluggedIn) {
  EndingDelegate delegate;
  delegate.whenLaunched = [&] { panel().close(); };
  Application& application = bench.frame().application();
  application.setDelegate(&delegate);
  EXPECT_EQ(application.run(), 0);
  EXPECT_EQ(delegate.ends, 1);
  application.setDelegate(nullptr);
  EXPECT_EQ(hardware.displays.all().size(), 2u);
}

TEST_F(DeskWindowsTest, ThePictureOfTheDeskIsWrittenBesideItsFileAndAfterEachChange) {
  const auto file = bench.home() / "desk.png";
  EXPECT_TRUE(bench.runUntil([&] { return std::filesystem::exists(file); }));
  const auto shot = [&] { return QImage(QString::fromStdString(file.string())); };
  EXPECT_EQ(shot().size(), QSize(800, 800));
  const QRect box = window(2)->pictureBox().translated(window(2)->pos());
  const QPoint place(box.x() + box.width() / 12, box.y() + box.height() * 84 / 100);
  const int before = qRed(shot().pixel(place));
  hardware.monitors.setLevelByButtons(2, 100);
  EXPECT_TRUE(bench.runUntil([&] { return qRed(shot().pixel(place)) > before; }));
  EXPECT_FALSE(std::filesystem::exists(bench.home() / "desk.json.state" / "desk.png"));
}

TEST(DeskWindowsInDetail, AtTwoPixelsPerPointThePictureHasTwiceAsManyPixels) {
  QtBench& bench = QtBench::renewed(
      {.pixelsPerPoint = 2, .sessionBus = {}, .deskText = R"({"displays": [{"identifier": 2}]})"});
  const MonitorWindow* const window = bench.frame().desk()->window(2);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->pictureSize(), 2 * window->pictureBox().size());
  QtBench::drop();
}

TEST(DeskWindowsInDetail, ALongNameIsElidedAndTheToolTipHasAllOfIt) {
  QtBench& bench = QtBench::renewed({.pixelsPerPoint = 1, .sessionBus = {}, .deskText = R"({
      "displays": [{"identifier": 2, "firmware": {},
                    "name": "A display whose name is much longer than anybody would read",
                    "frame": {"x": 0, "y": 0, "width": 1000, "height": 800}},
                   {"identifier": 3, "frame": {"x": 1000, "y": 0, "width": 4000, "height": 800}}]})"});
  const MonitorWindow* const window = bench.frame().desk()->window(2);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->width(), MonitorWindow::smallestSize().width());
  for (const QWidget* const part : window->findChildren<QWidget*>()) {
    if (!part->isVisible()) continue;
    const QRect box(part->mapTo(window, QPoint()), part->size());
    EXPECT_TRUE(window->rect().contains(box)) << part->accessibleName().toStdString();
  }
  bool isInToolTip = false;
  for (const QWidget* const part : window->findChildren<QWidget*>()) {
    isInToolTip = isInToolTip || part->toolTip().contains("longer than anybody would read");
  }
  EXPECT_TRUE(isInToolTip);
  QtBench::drop();
}

TEST(DeskWindowsInDetail, EveryControlHasAnAccessibleNameAndTakesTheFocus) {
  QtBench& bench = QtBench::renewed({.pixelsPerPoint = 1, .sessionBus = {}, .deskText = R"({
      "displays": [{"identifier": 2, "firmware": {}}, {"identifier": 3}]})"});
  bench.machine().hardware().changes.unplug(3);
  bench.settle();
  const DeskWindows& desk = *bench.frame().desk();
  for (const QWidget* const window : {static_cast<QWidget*>(desk.window(2)),
                                      static_cast<QWidget*>(&bench.frame().desk()->panel())}) {
    int controls = 0;
    for (const QWidget* const part : window->findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<const QAbstractButton*>(part) != nullptr ||
                             qobject_cast<const QComboBox*>(part) != nullptr;
      if (!isControl || !part->isEnabled()) continue;
      ++controls;
      EXPECT_FALSE(part->accessibleName().isEmpty());
      EXPECT_NE(part->focusPolicy() & Qt::TabFocus, 0) << part->accessibleName().toStdString();
    }
    EXPECT_GE(controls, 6);
  }
  QtBench::drop();
}

}  // namespace
}  // namespace brivane
