#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Desk/LiveDesk/DeskMap.h"

namespace brivane {
namespace {

constexpr LiveRoom room{{0, 0, 1000, 600}, 100, 60};
constexpr Rect left{-2000, 0, 2000, 1000};
constexpr Rect middle{0, 0, 2000, 1000};
constexpr Rect above{0, 1000, 2000, 1000};

std::vector<int> numbers(const LivePlace& place) {
  return {place.x, place.y, place.width, place.height};
}

TEST(DeskMap, TheArrangementFillsTheRoomAsFarAsItsShapeLetsIt) {
  const auto map = DeskMap::fitting({left, middle, above}, room);
  EXPECT_DOUBLE_EQ(map.pointsPerPoint(), 0.25);
  EXPECT_THAT(numbers(map.window(left)), testing::ElementsAre(2, 302, 496, 246));
  EXPECT_THAT(numbers(map.window(middle)), testing::ElementsAre(502, 302, 496, 246));
  EXPECT_THAT(numbers(map.window(above)), testing::ElementsAre(502, 52, 496, 246))
      << "higher on the desk is higher on the screen";
}

TEST(DeskMap, NothingIsShownLargerThanItIs) {
  const auto map = DeskMap::fitting({{0, 0, 400, 300}}, room);
  EXPECT_THAT(numbers(map.window({0, 0, 400, 300})), testing::ElementsAre(302, 152, 396, 296));
}

TEST(DeskMap, AWindowKeepsASizeThatCanBeUsed) {
  const auto map = DeskMap::fitting({{0, 0, 100000, 1000}}, room);
  const LivePlace place = map.window({0, 0, 1000, 1000});
  EXPECT_EQ(place.width, 100);
  EXPECT_EQ(place.height, 60);
}

TEST(DeskMap, WindowsThatAreLargerThanTheirDisplaysAreInTheRoomToo) {
  std::vector<Rect> frames;
  for (int i = 0; i < 12; ++i) frames.push_back({1920.0 * i, -1080.0 * i, 1920, 1080});
  const auto map = DeskMap::fitting(frames, room);
  EXPECT_THAT(numbers(map.window(frames.front())), testing::ElementsAre(2, 18, 100, 60));
  EXPECT_THAT(numbers(map.window(frames.back())), testing::ElementsAre(898, 522, 100, 60));
  EXPECT_TRUE(map.fits(frames));
  frames.push_back({1920 * 11.5, -1080.0 * 11, 960, 1080});
  EXPECT_FALSE(map.fits(frames)) << "there is room for the display, but not for its window";
}

TEST(DeskMap, WithoutDisplaysOrWithEmptyOnesThereIsStillAMap) {
  EXPECT_EQ(DeskMap::fitting({}, room).pointsPerPoint(), 1);
  const auto map = DeskMap::fitting({{5, 5, 0, 0}}, room);
  EXPECT_EQ(map.window({5, 5, 0, 0}).width, 100);
}

TEST(DeskMap, TheRoomNeedNotBeginAtTheScreensCorner) {
  const auto map = DeskMap::fitting({middle}, {{3000, 40, 500, 500}, 1, 1});
  EXPECT_THAT(numbers(map.window(middle)), testing::ElementsAre(3002, 167, 496, 246));
}

TEST(DeskMap, AMovedWindowsFrameHasItsWindowExactlyThere) {
  const auto map = DeskMap::fitting({left, middle, above}, room);
  for (const auto& [x, y] : {std::pair{502, 302}, {-37, 12}, {731, 555}, {3, 1}}) {
    const Rect frame = map.movedFrame(middle, x, y);
    EXPECT_EQ(map.window(frame).x, x);
    EXPECT_EQ(map.window(frame).y, y);
    EXPECT_EQ(frame.width, middle.width);
    EXPECT_EQ(frame.height, middle.height);
  }
  EXPECT_EQ(map.movedFrame(middle, 502, 302), middle);
}

TEST(DeskMap, AnArrangementFitsWhileEveryDisplayIsInTheRoom) {
  const auto map = DeskMap::fitting({left, middle, above}, room);
  EXPECT_TRUE(map.fits({left, middle, above}));
  EXPECT_TRUE(map.fits({{0, -100, 2000, 1000}}));
  EXPECT_FALSE(map.fits({{0, -300, 2000, 1000}})) << "below the room";
  EXPECT_FALSE(map.fits({middle, {2000, 0, 1000, 1000}})) << "to the right of it";
  EXPECT_FALSE(map.fits({{-2400, 0, 2000, 1000}})) << "to the left of it";
  EXPECT_FALSE(map.fits({{0, 1400, 2000, 1000}})) << "above it";
}

TEST(SnappedFrame, TouchesItsNeighbourWithoutAGap) {
  EXPECT_EQ(snapped({-2030, 0, 2000, 1000}, {middle}, 40), left);
  EXPECT_EQ(snapped({-1975, 0, 2000, 1000}, {middle}, 40), left);
  EXPECT_EQ(snapped({30, 1020, 2000, 1000}, {middle}, 40), above);
}

TEST(SnappedFrame, StaysWhereItIsFarFromAllOthers) {
  const Rect far{-2100, 300, 2000, 1000};
  EXPECT_EQ(snapped(far, {middle}, 40), far);
  const Rect aside{-2030, 4000, 2000, 1000};
  EXPECT_EQ(snapped(aside, {middle}, 40), aside) << "edges that don't face each other";
  EXPECT_EQ(snapped(far, {}, 40), far);
}

TEST(PointIn, TheUpperLeftIsInsideAndTheLowerRightToo) {
  const Rect frame{100, -50, 1920, 1080};
  EXPECT_EQ(pointIn(frame, 0, 0), (Point{100, 1030}));
  EXPECT_EQ(pointIn(frame, 0.5, 0.5), (Point{1060, 490}));
  for (const double part : {-3.0, 0.0, 0.999, 1.0, 7.0}) {
    EXPECT_TRUE(mouseInRect(pointIn(frame, part, part), frame)) << part;
  }
}

}  // namespace
}  // namespace brivane
