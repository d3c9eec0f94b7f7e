#include <gtest/gtest.h>

#include <algorithm>

#include "BrivaneUI/AppIconArtwork.h"
#include "BrivaneUI/CardBackground.h"
#include "BrivaneUI/SparkleShape.h"
#include "BrivaneUI/SparklingMonitorMark.h"
#include "Tests/Support/DescribedDisplayList.h"
#include "Tests/Support/Golden.h"

namespace brivane {
namespace {

const Rect square{100, 200, 40, 40};

std::vector<Point> ends(const FilledPath& path) {
  std::vector<Point> points;
  for (const CurveSegment& segment : path.segments) points.push_back(segment.end);
  return points;
}

TEST(SparkleShape, TheFourPointsTouchTheEdgesAndTheOutlineIsClosed) {
  const FilledPath path = SparkleShape{0.7}.path(square, Paint(Color{}));
  EXPECT_EQ(path.start, (Point{120, 240}));
  EXPECT_EQ(ends(path), (std::vector<Point>{{140, 220}, {120, 200}, {100, 220}, {120, 240}}));
}

TEST(SparkleShape, PinchDrawsTheSidesFromStraightToTheMiddle) {
  const CurveSegment straight = SparkleShape{0}.path(square, Paint(Color{})).segments.at(0);
  EXPECT_EQ(straight, (CurveSegment{{120, 240}, {140, 220}, {140, 220}}));
  const CurveSegment half = SparkleShape{0.5}.path(square, Paint(Color{})).segments.at(0);
  EXPECT_EQ(half, (CurveSegment{{120, 230}, {130, 220}, {140, 220}}));
  const CurveSegment whole = SparkleShape{1}.path(square, Paint(Color{})).segments.at(0);
  EXPECT_EQ(whole, (CurveSegment{{120, 220}, {120, 220}, {140, 220}}));
}

TEST(SparklingMonitorMark, TheMarkScalesWithItsWidthAndStaysWithinIt) {
  for (const double width : {16.0, 590.0}) {
    const double height = SparklingMonitorMark::height(width);
    const Rect rect{10, 20, width, height};
    for (const Primitive& primitive : SparklingMonitorMark{}.body(rect)) {
      if (const auto* path = std::get_if<FilledPath>(&primitive)) {
        for (const Point& point : ends(*path)) EXPECT_TRUE(mouseInRect(point, rect));
      }
      if (const auto* screen = std::get_if<StrokedRectangle>(&primitive)) {
        EXPECT_DOUBLE_EQ(screen->shape.frame.x - screen->lineWidth / 2, rect.x);
        EXPECT_DOUBLE_EQ(screen->shape.frame.y + screen->shape.frame.height + screen->lineWidth / 2,
                         rect.y + height);
      }
    }
  }
}

TEST(AppIconArtwork, TheIconLooksAsItDid) {
  expectGolden("app-icon.txt", describe(AppIconArtwork{}.body()));
}

TEST(CardBackground, TheBorderIsOnePointWideAndInsideTheCard) {
  const DisplayList list = CardBackground{24}.body({0, 0, 360, 54}, Appearance::light);
  EXPECT_EQ(std::get<FilledRectangle>(list.at(0)).shape, (RoundedRectangle{{0, 0, 360, 54}, 24}));
  const auto& border = std::get<StrokedRectangle>(list.at(1));
  EXPECT_EQ(border.shape, (RoundedRectangle{{0.5, 0.5, 359, 53}, 23.5}));
  EXPECT_EQ(border.lineWidth, 1);
  EXPECT_TRUE(std::holds_alternative<LinearGradient>(border.ink));
}

TEST(CardBackground, LightAndDarkCardsDiffer) {
  EXPECT_NE(CardBackground{24}.body({0, 0, 360, 54}, Appearance::light),
            CardBackground{24}.body({0, 0, 360, 54}, Appearance::dark));
}

}  // namespace
}  // namespace brivane
