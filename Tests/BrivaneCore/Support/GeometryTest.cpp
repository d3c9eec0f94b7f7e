#include <gtest/gtest.h>

#include "BrivaneCore/Support/Geometry.h"

namespace brivane {
namespace {

TEST(MouseInRect, LeftAndTopEdgesAreInsideRightAndBottomEdgesOutside) {
  const Rect rect{10, 20, 100, 50};
  EXPECT_TRUE(mouseInRect({10, 40}, rect));
  EXPECT_TRUE(mouseInRect({50, 70}, rect));
  EXPECT_TRUE(mouseInRect({10, 70}, rect));
  EXPECT_FALSE(mouseInRect({110, 40}, rect));
  EXPECT_FALSE(mouseInRect({50, 20}, rect));
  EXPECT_FALSE(mouseInRect({9.5, 40}, rect));
  EXPECT_FALSE(mouseInRect({50, 70.5}, rect));
}

TEST(MouseInRect, TwoTouchingScreensShareNoPoint) {
  const Rect left{0, 0, 100, 100};
  const Rect right{100, 0, 100, 100};
  const Rect above{0, 100, 100, 100};
  EXPECT_FALSE(mouseInRect({100, 50}, left));
  EXPECT_TRUE(mouseInRect({100, 50}, right));
  EXPECT_TRUE(mouseInRect({50, 100}, left));
  EXPECT_FALSE(mouseInRect({50, 100}, above));
}

TEST(DescribePoint, APointIsPrintedInBraces) {
  EXPECT_EQ(describe(Point{100, 200.5}), "{100, 200.5}");
  EXPECT_EQ(describe(Point{-1920, 1000000}), "{-1920, 1000000}");
}

}  // namespace
}  // namespace brivane
