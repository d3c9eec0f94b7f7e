#include <gtest/gtest.h>

#include "BrivaneCore/Policy/CursorRouter.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

/// Display 1 at x 0 to 100, display 2 at x 100 to 200, both from y 0 to 100.
struct CursorRouterTest : testing::Test {
  CursorRouterTest() {
    system.add({1}, "Left");
    system.add({2}, "Right");
  }

  std::optional<DisplayID> at(double x, double y) {
    system.pointer = {x, y};
    return CursorRouter(system).displayUnderCursor();
  }

  FakeDisplaySystem system;
};

TEST_F(CursorRouterTest, FindsTheDisplayOfTheScreenUnderThePointer) {
  EXPECT_EQ(at(50, 50), 1U);
  EXPECT_EQ(at(150, 1), 2U);
}

TEST_F(CursorRouterTest, ASharedVerticalEdgeBelongsToTheRightHandScreen) {
  EXPECT_EQ(at(100, 50), 2U);
  EXPECT_EQ(at(99.999, 50), 1U);
}

TEST_F(CursorRouterTest, LeftAndTopEdgesAreInsideRightAndBottomEdgesOutside) {
  EXPECT_EQ(at(0, 50), 1U);
  EXPECT_EQ(at(50, 100), 1U);
  EXPECT_EQ(at(50, 0), std::nullopt);
  EXPECT_EQ(at(200, 50), std::nullopt);
}

TEST_F(CursorRouterTest, OffEveryScreenThereIsNoDisplay) {
  EXPECT_EQ(at(-1, 50), std::nullopt);
  EXPECT_EQ(at(50, 101), std::nullopt);
  system.allScreens.clear();
  EXPECT_EQ(at(50, 50), std::nullopt);
}

TEST_F(CursorRouterTest, TheFirstOfOverlappingScreensWins) {
  system.allScreens[1].frame = system.allScreens[0].frame;
  EXPECT_EQ(at(50, 50), 1U);
}

TEST_F(CursorRouterTest, AMatchingScreenWithoutANumberEndsTheSearch) {
  system.allScreens[1].frame = system.allScreens[0].frame;
  for (const auto number : {std::optional<DisplayID>(), std::optional<DisplayID>(0)}) {
    system.allScreens[0].number = number;
    EXPECT_EQ(at(50, 50), std::nullopt);
  }
}

TEST_F(CursorRouterTest, AScreenWithoutANumberElsewhereIsPassedOver) {
  system.allScreens[0].number.reset();
  EXPECT_EQ(at(150, 50), 2U);
}

}  // namespace
}  // namespace brivane
