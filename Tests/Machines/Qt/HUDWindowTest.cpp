#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QBackingStore>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

#include "Machines/Qt/Frame/HUDWindow.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

constexpr HUDWindowAttributes attributes{.contentRect = {0, 0, 360, 54},
                                         .level = statusWindowLevel};

DisplayList bar(double width, const std::string& symbol = "sun.min") {
  return {FilledRectangle{{{0, 0, 360, 54}, 24}, Paint{Color{0.2, 0.2, 0.2, 1}}},
          MaskedFill{{{60, 24, width, 6}, 3}, {60, 24, 200, 6}, Paint{Color{1, 1, 1, 1}}},
          SymbolImage{{20, 18, 18, 18}, symbol, Color{1, 1, 1, 1}}};
}

/// The bench's runtime with a clock that only the test moves.
class HandSetClock : public Runtime {
 public:
  explicit HandSetClock(Runtime& benchRuntime) : runtime(benchRuntime) {}

  Instant now() const override { return instant; }
  void sleep(Microseconds duration) override { instant += duration; }
  bool isMainThread() const override { return runtime.isMainThread(); }
  void async(Task task) override { runtime.async(std::move(task)); }
  TimerID after(Microseconds delay, Task task) override {
    return runtime.after(delay, std::move(task));
  }
  TimerID every(Microseconds period, Task task) override {
    return runtime.every(period, std::move(task));
  }
  void cancel(TimerID timer) override { runtime.cancel(timer); }
  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label,
                                               QueueQuality quality) override {
    return runtime.makeSerialQueue(label, quality);
  }
  void run() override { runtime.run(); }
  void stop() override { runtime.stop(); }

 private:
  Runtime& runtime;
  Instant instant = runtime.now();
};

/// The part of the widget that is drawn while this exists.
class DrawnPart : public QObject {
 public:
  explicit DrawnPart(QWidget& drawnWidget) : widget(drawnWidget) {
    widget.installEventFilter(this);
  }
  ~DrawnPart() override { widget.removeEventFilter(this); }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      last = static_cast<QPaintEvent*>(event)->region();
      part += last;
    }
    return false;
  }

  QRegion part;
  QRegion last;

 private:
  QWidget& widget;
};

/// The card's content. The corners outside the card are undefined on the screen of these tests.
QImage inCard(const QImage& picture) {
  return picture.copy(8, 12, 344, 30).convertToFormat(QImage::Format_RGB32);
}

class HUDWindowTest : public testing::Test {
 protected:
  HUDWindowTest() { window.installContentView(bar(100)); }

  /// At the middle of the card, 0 to 255.
  int opacity() {
    const QImage image = window.widget().grab().toImage();
    return qAlpha(image.pixel(image.rect().center()));
  }

  void show() {
    const DrawnPart drawn(window.widget());
    window.setAlpha(1);
    window.orderFrontRegardless();
    ASSERT_TRUE(bench.runUntil([&] { return drawn.part == window.widget().rect(); }));
    bench.settle();
  }

  /// Whether the screen shows what the window draws as a whole.
  bool isUpToDate() {
    QWidget& widget = window.widget();
    const auto* const shown = dynamic_cast<QImage*>(widget.backingStore()->paintDevice());
    return shown != nullptr && inCard(*shown) == inCard(widget.grab().toImage());
  }

  QtBench& bench = QtBench::shared();
  std::unique_ptr<HUDWindow> made = bench.frame().makeHUDWindow(attributes);
  QtHUDWindow& window = dynamic_cast<QtHUDWindow&>(*made);
};

TEST_F(HUDWindowTest, GetsNoClicksAndNoKeysAndBypassesTheWindowManager) {
  const QWidget& widget = window.widget();
  for (const auto flag : {Qt::WindowTransparentForInput, Qt::WindowDoesNotAcceptFocus,
                          Qt::WindowStaysOnTopHint, Qt::BypassWindowManagerHint}) {
    EXPECT_TRUE(widget.windowFlags().testFlag(flag)) << flag;
  }
  EXPECT_TRUE(widget.testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(HUDWindowTest, ItIsOrderedInAndOutWhateverItsAlpha) {
  EXPECT_FALSE(window.isVisible());
  window.setAlpha(0);
  window.orderFrontRegardless();
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(opacity(), 0);
  window.setAlpha(1);
  EXPECT_EQ(opacity(), 255);
  window.orderOut();
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(window.widget().isVisible());
}

TEST_F(HUDWindowTest, ToAssistiveTechnologyItIsALabelWithTheNotificationInIt) {
  show();
  window.updateContent({TextRun{.box = {}, .text = "45", .paint = Color{}}},
                       ContentChange::immediate);
  window.announce("Halden, 45%");
  auto* const label = QAccessible::queryAccessibleInterface(&window.widget());
  EXPECT_EQ(label->role(), QAccessible::StaticText);
  EXPECT_EQ(label->text(QAccessible::Name), "45");
  ASSERT_EQ(label->childCount(), 1);
  EXPECT_EQ(label->child(1), nullptr);
  const auto* const notification = label->child(0);
  EXPECT_EQ(label->indexOfChild(notification), 0);
  EXPECT_EQ(notification->parent(), label);
  EXPECT_EQ(notification->role(), QAccessible::Notification);
  EXPECT_EQ(notification->text(QAccessible::Name), "Halden, 45%");
  EXPECT_EQ(notification->rect(), label->rect());
  EXPECT_FALSE(notification->state().invisible);
  window.orderOut();
  EXPECT_TRUE(notification->state().invisible);
}

TEST_F(HUDWindowTest, AChangeRedrawsOnlyWhatItMoves) {
  show();
  {
    const DrawnPart drawn(window.widget());
    window.updateContent(bar(180), ContentChange::animated);
    EXPECT_TRUE(bench.runUntil([&] { return window.contentNow() == bar(180); }));
    EXPECT_TRUE(drawn.part.contains(QRect(60, 24, 200, 6)));
    EXPECT_FALSE(drawn.last.intersects(QRect(0, 0, 50, 54)));
    EXPECT_FALSE(drawn.last.intersects(QRect(0, 0, 360, 20)));
  }
  EXPECT_TRUE(bench.runUntil([&] { return isUpToDate(); }));
}

TEST_F(HUDWindowTest, AChangeInterruptedByOthersLeavesNoTrace) {
  show();
  for (const double width : {180.0, 20.0, 120.0}) {
    window.updateContent(bar(width, width > 100 ? "sun.max.fill" : "moon.fill"),
                         ContentChange::animated);
    bench.settle();
  }
  EXPECT_TRUE(bench.runUntil([&] { return window.contentNow() == bar(120, "sun.max.fill"); }));
  EXPECT_TRUE(bench.runUntil([&] { return isUpToDate(); }));
  window.updateContent(bar(30), ContentChange::immediate);
  EXPECT_TRUE(bench.runUntil([&] { return isUpToDate(); }));
}

TEST_F(HUDWindowTest, SettingTheSameAlphaDrawsNothingAndAnotherDrawsEverything) {
  show();
  const DrawnPart drawn(window.widget());
  window.animateAlpha(1, 0, AnimationTiming::linear, {});
  bench.settle();
  EXPECT_TRUE(drawn.part.isEmpty());
  window.animateAlpha(0.5, 0, AnimationTiming::linear, {});
  bench.settle();
  EXPECT_EQ(drawn.part, QRegion(window.widget().rect()));
}

TEST_F(HUDWindowTest, AChangeDuringAFadeDrawsEverything) {
  show();
  DrawnPart drawn(window.widget());
  window.animateAlpha(0.2, 10, AnimationTiming::linear, {});
  bench.settle();
  drawn.part = {};
  window.updateContent(bar(150), ContentChange::animated);
  EXPECT_TRUE(bench.runUntil([&] { return !drawn.part.isEmpty(); }));
  EXPECT_EQ(drawn.part, QRegion(window.widget().rect()));
}

TEST_F(HUDWindowTest, TheOriginOfFramesIsTheLowerLeftOfTheMainScreen) {
  window.setFrame({220, 130, 360, 54});
  window.orderFrontRegardless();
  EXPECT_EQ(window.frame(), (Rect{220, 130, 360, 54}));
  EXPECT_EQ(window.widget().geometry(), QRect(220, 800 - 130 - 54, 360, 54));
}

TEST_F(HUDWindowTest, AFadeStartsAtTheCurrentAlphaAndReportsItsEnd) {
  window.orderFrontRegardless();
  bool isOver = false;
  window.setAlpha(0.5);
  window.animateAlpha(0.1, 60, AnimationTiming::linear, {});
  EXPECT_NEAR(window.alphaNow(), 0.5, 0.1);
  window.animateAlpha(0, 0.05, AnimationTiming::easeIn, [&] { isOver = true; });
  EXPECT_TRUE(bench.runUntil([&] { return isOver; }));
  EXPECT_EQ(window.alphaNow(), 0);
  EXPECT_EQ(opacity(), 0);
}

TEST_F(HUDWindowTest, AFadeThatEasesInBeginsMoreSlowlyThanALinearOne) {
  const auto other = bench.frame().makeHUDWindow(attributes);
  const auto& linear = dynamic_cast<QtHUDWindow&>(*other);
  other->animateAlpha(0, 20, AnimationTiming::linear, {});
  window.animateAlpha(0, 20, AnimationTiming::easeIn, {});
  EXPECT_TRUE(bench.runUntil([&] { return linear.alphaNow() < 0.99; }));
  const double straight = linear.alphaNow();
  EXPECT_GT(window.alphaNow(), straight);
  EXPECT_LT(window.alphaNow(), 1);
}

TEST_F(HUDWindowTest, SettingTheAlphaEndsAFadeWhoseCompletionStillRuns) {
  window.orderFrontRegardless();
  bool isOver = false;
  window.animateAlpha(0, 0.03, AnimationTiming::easeIn, [&] { isOver = true; });
  window.setAlpha(1);
  EXPECT_TRUE(bench.runUntil([&] { return isOver; }));
  EXPECT_EQ(window.alphaNow(), 1);
}

TEST_F(HUDWindowTest, AnAnimationOfNoLengthSetsTheAlphaAtOnceAndTakesThePlaceOfAFade) {
  window.orderFrontRegardless();
  window.animateAlpha(0, 60, AnimationTiming::easeIn, {});
  window.animateAlpha(1, 0, AnimationTiming::linear, {});
  EXPECT_EQ(window.alphaNow(), 1);
}

class HUDWindowContentTest : public testing::Test {
 protected:
  HUDWindowContentTest() {
    window.installContentView(bar(100));
    window.orderFrontRegardless();
  }

  double barWidth() { return std::get<MaskedFill>(window.contentNow().at(1)).mask.frame.width; }
  void pass(int milliseconds) { clock.sleep(std::chrono::milliseconds(milliseconds)); }

  QtBench& bench = QtBench::shared();
  HandSetClock clock{bench.runtime()};
  QtHUDWindow window{attributes, clock, bench.machine().displays(), bench.frame().application()};
};

TEST_F(HUDWindowContentTest, AnAnimatedChangeMovesTheBarAndAnImmediateOneSetsIt) {
  window.updateContent(bar(180), ContentChange::animated);
  EXPECT_EQ(barWidth(), 100);
  pass(70);
  EXPECT_GT(barWidth(), 110);
  EXPECT_LT(barWidth(), 180);
  pass(70);
  EXPECT_EQ(barWidth(), 180);
  window.updateContent(bar(20), ContentChange::immediate);
  EXPECT_EQ(barWidth(), 20);
}

TEST_F(HUDWindowContentTest, AChangeTakesAHundredAndFortyMilliseconds) {
  window.updateContent(bar(180), ContentChange::animated);
  pass(139);
  EXPECT_LT(barWidth(), 180);
  pass(1);
  EXPECT_EQ(barWidth(), 180);
}

TEST_F(HUDWindowContentTest, AChangeInTheMiddleOfAnotherGoesOnFromWhatIsShown) {
  window.updateContent(bar(200), ContentChange::animated);
  pass(70);
  const double shown = barWidth();
  EXPECT_GT(shown, 110);
  window.updateContent(bar(50), ContentChange::animated);
  EXPECT_EQ(barWidth(), shown);
}

TEST_F(HUDWindowContentTest, AChangeWhileTheSymbolIsReplacedGoesOnFromTheBarThatIsShown) {
  window.updateContent(bar(200, "sun.max.fill"), ContentChange::animated);
  pass(70);
  const double shown = barWidth();
  EXPECT_GT(shown, 110);
  window.updateContent(bar(50, "sun.max.fill"), ContentChange::animated);
  EXPECT_EQ(barWidth(), shown);
}

TEST_F(HUDWindowTest, OrderedFrontItIsPlacedWhereItsDisplayIsNow) {
  window.setFrame({220, 130, 360, 54});
  window.orderFrontRegardless();
  bench.machine().hardware().changes.setFrame(1, {0, 0, 1600, 800});
  window.orderFrontRegardless();
  EXPECT_EQ(window.widget().geometry(), QRect(200 - 180, 800 - 130 - 54, 360, 54));
  bench.machine().hardware().changes.setFrame(1, {0, 0, 800, 800});
}

/// A screen of 800 by 800 pixels, at so many per point.
class HUDWindowScaleTest : public testing::TestWithParam<double> {
 public:
  ~HUDWindowScaleTest() override { QtBench::drop(); }
};

TEST_P(HUDWindowScaleTest, ItsLowerEdgeStaysAndItIsAsSharpAsTheScreen) {
  const double scale = GetParam();
  QtBench& bench = QtBench::renewed({.pixelsPerPoint = scale});
  const auto made = bench.frame().makeHUDWindow(attributes);
  auto& window = dynamic_cast<QtHUDWindow&>(*made);
  window.installContentView(bar(100));
  window.setFrame({220, 130, 360, 54});
  window.orderFrontRegardless();
  const QRectF points = window.widget().geometry();
  EXPECT_EQ(points.size(), QSizeF(360, 54));
  EXPECT_NEAR(points.center().x() * scale, 400, 1);
  EXPECT_NEAR((points.y() + points.height()) * scale, 800 - 130, 1);
  const QImage image = window.widget().grab().toImage();
  EXPECT_EQ(image.size(), (QSizeF(360, 54) * scale).toSize());
}

INSTANTIATE_TEST_SUITE_P(Each, HUDWindowScaleTest, testing::Values(1, 1.5, 2));

}  // namespace
}  // namespace brivane
