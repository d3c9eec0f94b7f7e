#include <gmock/gmock.h>

#include <memory>

#include "BrivaneApp/BrightnessSliderRow.h"
#include "Tests/Support/ApplicationTexts.h"
#include "Tests/Support/FakeFrame.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A write: milliseconds and level.
using Write = std::pair<std::int64_t, Percent>;

struct BrightnessSliderRowTest : testing::Test {
  BrightnessSliderRowTest() { show(50); }

  void show(Percent percent) { menu.setItems({row->item(texts, "Studio", percent)}); }
  void drag(double value) { menu.drag(0, value); }
  double position() { return menu.sliderValue(0); }
  void pass(Microseconds duration) { machine.time.runFor(duration); }
  std::int64_t nowMilliseconds() const {
    return machine.time.now().time_since_epoch() / milliseconds(1);
  }

  FakeMachine machine;
  StringCatalogue texts = applicationTexts(machine);
  FakeMenu menu;
  std::vector<Write> writes;
  std::unique_ptr<BrightnessSliderRow> row = std::make_unique<BrightnessSliderRow>(
      machine.time, SliderPlace{menu, 0}, PercentRange{-100, 200},
      [this](Percent level) { writes.emplace_back(nowMilliseconds(), level); });
};

TEST_F(BrightnessSliderRowTest, TheSliderHasTheRangeTheLevelAndALabelWithTheDisplaysName) {
  EXPECT_THAT(menu.lines(),
              ElementsAre("slider -100..200 50 menu.slider.accessibilityLabel (Studio)"));
}

TEST_F(BrightnessSliderRowTest, ALevelOutsideTheRangeIsShownAtTheNearerEnd) {
  row = std::make_unique<BrightnessSliderRow>(machine.time, SliderPlace{menu, 0},
                                              PercentRange{0, 100}, [](Percent) {});
  show(-30);
  EXPECT_EQ(position(), 0);
  show(150);
  EXPECT_EQ(position(), 100);
  row->follow(-30);
  EXPECT_EQ(position(), 0);
  row->follow(150);
  EXPECT_EQ(position(), 100);
}

TEST_F(BrightnessSliderRowTest, TheFirstMoveIsWrittenAtOnce) {
  drag(51);
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}));
  EXPECT_EQ(machine.time.timerCount(), 0U);
}

TEST_F(BrightnessSliderRowTest, PositionsAreRoundedToTheNearestWholeLevel) {
  struct Case {
    double position;
    Percent level;
  };
  for (const auto& [position, level] : std::vector<Case>{{10.4, 10},
                                                         {10.5, 11},
                                                         {11.5, 12},
                                                         {-0.4, 0},
                                                         {-0.5, -1},
                                                         {-30.6, -31},
                                                         {-99.9, -100},
                                                         {199.5, 200}}) {
    writes.clear();
    drag(position);
    ASSERT_THAT(writes, SizeIs(1)) << position;
    EXPECT_EQ(writes.front().second, level) << position;
    pass(milliseconds(70));
  }
}

TEST_F(BrightnessSliderRowTest, AMoveWithinSeventyMillisecondsWaitsForTheRestOfThem) {
  drag(51);
  pass(milliseconds(30));
  drag(52);
  pass(milliseconds(39));
  EXPECT_THAT(writes, SizeIs(1));
  pass(milliseconds(1));
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{70, 52}));
}

TEST_F(BrightnessSliderRowTest, SeventyMillisecondsAfterAWriteAMoveIsWrittenAtOnce) {
  drag(51);
  pass(milliseconds(70));
  drag(52);
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{70, 52}));
}

TEST_F(BrightnessSliderRowTest, TheSeventyMillisecondsBeginBeforeTheWriteHoweverLongItTakes) {
  BrightnessSliderRow slow(machine.time, SliderPlace{menu, 0}, PercentRange{0, 100},
                           [this](Percent level) {
                             writes.emplace_back(nowMilliseconds(), level);
                             machine.time.sleep(milliseconds(50));
                           });
  menu.setItems({slow.item(texts, "Studio", 50)});
  drag(51);
  drag(52);
  pass(milliseconds(500));
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{70, 52}));
}

TEST_F(BrightnessSliderRowTest, LaterMovesNeitherDelayThePendingWriteNorAddOne) {
  drag(51);
  for (const double position : {52, 53, 54, 55, 56}) {
    pass(milliseconds(10));
    drag(position);
    EXPECT_EQ(machine.time.timerCount(), 1U);
  }
  pass(milliseconds(500));
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{70, 56}));
  EXPECT_EQ(machine.time.timerCount(), 0U);
}

TEST_F(BrightnessSliderRowTest, AMoveToThePendingLevelIsIgnored) {
  drag(51);
  pass(milliseconds(10));
  drag(52);
  drag(52.3);
  pass(milliseconds(500));
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{70, 52}));
}

TEST_F(BrightnessSliderRowTest, AMoveToTheLevelWrittenLastIsWrittenAgain) {
  drag(51);
  pass(milliseconds(100));
  drag(51);
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{100, 51}));
}

TEST_F(BrightnessSliderRowTest, ADragOfOneSecondIsWrittenEverySeventyMillisecondsAndEndsExactly) {
  for (int step = 0; step < 100; ++step) {
    drag(step);
    pass(milliseconds(10));
  }
  const auto writesWhileDragging = writes.size();
  pass(milliseconds(500));
  EXPECT_GE(writesWhileDragging, 14U);
  EXPECT_LE(writesWhileDragging, 15U);
  EXPECT_EQ(writes.back(), (Write{1050, 99}));
  for (std::size_t i = 1; i < writes.size(); ++i) {
    EXPECT_EQ(writes[i].first - writes[i - 1].first, 70) << i;
  }
}

TEST_F(BrightnessSliderRowTest, ALateTimerWritesNothingTwice) {
  drag(51);
  pass(milliseconds(10));
  drag(52);
  // The main thread is busy past the time of the pending write, and the next move comes first.
  machine.time.sleep(milliseconds(90));
  drag(53);
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{100, 53}));
  drag(54);
  pass(milliseconds(500));
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{100, 53}, Write{170, 54}));
}

TEST_F(BrightnessSliderRowTest, FlushingMakesThePendingWriteAtOnce) {
  drag(51);
  pass(milliseconds(10));
  row->flush();
  EXPECT_FALSE(row->hasWaitingWrite());
  drag(52);
  EXPECT_TRUE(row->hasWaitingWrite());
  row->flush();
  EXPECT_FALSE(row->hasWaitingWrite());
  row.reset();
  pass(milliseconds(500));
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}, Write{10, 52}));
}

TEST_F(BrightnessSliderRowTest, ADestroyedRowWritesNothing) {
  drag(51);
  pass(milliseconds(10));
  drag(52);
  row.reset();
  EXPECT_EQ(machine.time.timerCount(), 0U);
  pass(milliseconds(500));
  EXPECT_THAT(writes, ElementsAre(Write{0, 51}));
}

TEST_F(BrightnessSliderRowTest, TheSliderFollowsALevelThatDiffersByOneOrMore) {
  drag(50.4);
  pass(milliseconds(400));
  row->follow(51);
  EXPECT_EQ(position(), 50.4);
  row->follow(50);
  EXPECT_EQ(position(), 50.4);
  row->follow(52);
  EXPECT_EQ(position(), 52);
  row->follow(53);
  EXPECT_EQ(position(), 53);
  row->follow(-20);
  EXPECT_EQ(position(), -20);
  EXPECT_THAT(writes, SizeIs(1));
}

TEST_F(BrightnessSliderRowTest, TheSliderFollowsALevelBeforeItsFirstWrite) {
  row->follow(60);
  EXPECT_EQ(position(), 60);
  EXPECT_THAT(writes, IsEmpty());
}

TEST_F(BrightnessSliderRowTest, TheSliderStaysForFourTenthsOfASecondAfterAWrite) {
  drag(51);
  pass(milliseconds(399));
  row->follow(20);
  EXPECT_EQ(position(), 51);
  pass(milliseconds(1));
  row->follow(20);
  EXPECT_EQ(position(), 20);
}

TEST_F(BrightnessSliderRowTest, TheSliderStaysWhileAWriteIsPending) {
  drag(51);
  pass(milliseconds(10));
  drag(52);
  // The main thread is busy for so long that only the pending write keeps the slider.
  machine.time.sleep(milliseconds(500));
  row->follow(20);
  EXPECT_EQ(position(), 52);
}

}  // namespace
}  // namespace brivane
