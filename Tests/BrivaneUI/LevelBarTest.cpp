#include <gtest/gtest.h>

#include <limits>

#include "BrivaneUI/LevelBar.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

constexpr double barHeight = 6;
constexpr DynamicColor boost{{1, 0, 0, 1}, {0, 1, 0, 1}};

double fillWidth(std::int64_t level, double width) {
  return LevelBar{level, barHeight, boost}.fillWidth(width);
}

struct LevelBarTest : testing::Test {
  DisplayList body(std::int64_t level, Appearance appearance = Appearance::light) {
    return LevelBar{level, barHeight, boost}.body({58, 24}, 300, {appearance, colors, strings});
  }

  FakeMachine machine;
  CatalogColor colors{machine.resources(), machine.log()};
  const StringCatalogue strings{machine.resources(), machine.log(), "none"};
};

TEST(LevelBar, TheFillIsTheLevelsShareOfMinusOneHundredToTwoHundred) {
  EXPECT_EQ(fillWidth(-99, 3000), 10);
  EXPECT_EQ(fillWidth(-50, 300), 50);
  EXPECT_EQ(fillWidth(0, 300), 300.0 / 3);
  EXPECT_EQ(fillWidth(49, 300), 149);
  EXPECT_DOUBLE_EQ(fillWidth(100, 227), 227 * 2.0 / 3);
  EXPECT_DOUBLE_EQ(fillWidth(101, 300), 201);
  EXPECT_DOUBLE_EQ(fillWidth(199, 300), 299);
}

TEST(LevelBar, TheShareIsTakenBeforeItIsMultipliedByTheWidth) {
  EXPECT_EQ(fillWidth(0, 227), 100.0 / 300 * 227);
  EXPECT_EQ(fillWidth(-1, 227), 99.0 / 300 * 227);
}

TEST(LevelBar, AtMinusOneHundredAndBelowNothingIsFilled) {
  EXPECT_EQ(fillWidth(-100, 300), 0);
  EXPECT_EQ(fillWidth(-101, 300), 0);
  EXPECT_EQ(fillWidth(-5000, 300), 0);
  EXPECT_EQ(fillWidth(std::numeric_limits<std::int64_t>::min(), 300), 0);
}

TEST(LevelBar, AtTwoHundredAndAboveTheWholeBarIsFilled) {
  EXPECT_EQ(fillWidth(200, 227), 227);
  EXPECT_EQ(fillWidth(5000, 227), 227);
  EXPECT_EQ(fillWidth(std::numeric_limits<std::int64_t>::max() - 100, 227), 227);
}

TEST(LevelBar, AFillIsNeverNarrowerThanTheBarIsHigh) {
  EXPECT_EQ(fillWidth(-99, 200), 6);
  EXPECT_EQ(fillWidth(0, 9), 6);
  EXPECT_EQ(fillWidth(200, 3), 6);
}

TEST(LevelBar, ALevelThatOverflowsIsAProgrammingError) {
  for (const std::int64_t below : {0, 99}) {
    EXPECT_DEATH(fillWidth(std::numeric_limits<std::int64_t>::max() - below, 300),
                 "left the 64-bit range");
  }
}

TEST_F(LevelBarTest, TheTrackIsACapsuleOfFullWidthUnderTheFill) {
  const auto track = std::get<FilledRectangle>(body(0).at(0));
  EXPECT_EQ(track.shape, (RoundedRectangle{{58, 24, 300, 6}, 3}));
  EXPECT_EQ(track.ink, Ink(Paint(Color{0, 0, 0, 0.11858823529411766})));
}

TEST_F(LevelBarTest, TheFillBeginsAtTheLeadingEdgeAndMasksAGradientOfFullWidth) {
  const auto fill = std::get<MaskedFill>(body(0).at(1));
  EXPECT_EQ(fill.mask, (RoundedRectangle{{58, 24, 100, 6}, 3}));
  EXPECT_EQ(fill.area, (Rect{58, 24, 300, 6}));
}

TEST_F(LevelBarTest, TheColourChangesAbruptlyAtLevelOneHundred) {
  const Paint normal = Color{1, 1, 1, 0.72};
  const Paint above = boost.dark;
  const auto fill = std::get<MaskedFill>(body(150, Appearance::dark).at(1));
  const LinearGradient expected{
      {58, 27}, {358, 27}, {{0, normal}, {2.0 / 3, normal}, {2.0 / 3, above}, {1, above}}};
  EXPECT_EQ(fill.ink, Ink(expected));
}

TEST_F(LevelBarTest, AtOneHundredTheFillEndsWhereTheBoostBeginsAndAtOneHundredAndOneJustBeyond) {
  const auto endOfFill = [this](std::int64_t level) {
    const DisplayList list = body(level);
    const Rect& frame = std::get<MaskedFill>(list.at(1)).mask.frame;
    return frame.x + frame.width;
  };
  const double boostX = 58 + 200;
  EXPECT_DOUBLE_EQ(endOfFill(100), boostX);
  EXPECT_DOUBLE_EQ(endOfFill(101), boostX + 1);
}

}  // namespace
}  // namespace brivane
