#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneCore/DDC/DisplayArrangement.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct DisplayArrangementTest : testing::Test {
  DisplayArrangement arrangementOf(const std::vector<Screen>& screens) {
    displays.allScreens = screens;
    return DisplayArrangement::current(displays);
  }

  static Screen screen(std::optional<DisplayID> number, const Rect& frame) {
    return {number, frame, "A monitor", 1.0};
  }

  FakeDisplaySystem displays;
};

TEST_F(DisplayArrangementTest, EachScreenIsItsDisplayAndItsFrame) {
  EXPECT_THAT(arrangementOf({screen(7, {-1920, 120, 1920, 1080})}).entries,
              ElementsAre("7:-1920,120,1920,1080"));
  EXPECT_THAT(arrangementOf({}).entries, IsEmpty());
}

TEST_F(DisplayArrangementTest, FractionsOfPointsAreCutOff) {
  EXPECT_THAT(arrangementOf({screen(4000000000, {-0.9, -10.9, 99.99, 1080.5})}).entries,
              ElementsAre("4000000000:0,-10,99,1080"));
  EXPECT_EQ(arrangementOf({screen(1, {0.2, 0, 10, 10})}),
            arrangementOf({screen(1, {0.8, 0, 10, 10})}));
}

TEST_F(DisplayArrangementTest, TheEntriesAreSortedAsText) {
  EXPECT_THAT(
      arrangementOf({screen(9, {0, 0, 1, 1}), screen(10, {1, 0, 1, 1}), screen(1, {2, 0, 1, 1})})
          .entries,
      ElementsAre("10:1,0,1,1", "1:2,0,1,1", "9:0,0,1,1"));
}

TEST_F(DisplayArrangementTest, TheOrderOfTheScreensAndTheirNamesAreNoDifference) {
  const Screen left = screen(2, {0, 0, 100, 100});
  const Screen right = screen(3, {100, 0, 100, 100});
  Screen renamed = left;
  renamed.localizedName = "Another name";
  renamed.potentialHeadroom = 4;
  EXPECT_EQ(arrangementOf({left, right}), arrangementOf({right, renamed}));
}

TEST_F(DisplayArrangementTest, EveryChangeOfAFrameIsADifference) {
  const auto before = arrangementOf({screen(2, {10, 20, 30, 40})});
  for (const Rect& frame :
       {Rect{11, 20, 30, 40}, Rect{10, 21, 30, 40}, Rect{10, 20, 31, 40}, Rect{10, 20, 30, 41}}) {
    EXPECT_NE(arrangementOf({screen(2, frame)}), before);
  }
  EXPECT_NE(arrangementOf({screen(3, {10, 20, 30, 40})}), before);
  EXPECT_NE(arrangementOf({screen(2, {10, 20, 30, 40}), screen(3, {0, 0, 1, 1})}), before);
  EXPECT_NE(arrangementOf({}), before);
}

TEST_F(DisplayArrangementTest, AScreenWithoutANumberCountsAsDisplayZero) {
  EXPECT_THAT(arrangementOf({screen(std::nullopt, {0, 0, 5, 5})}).entries,
              ElementsAre("0:0,0,5,5"));
}

}  // namespace
}  // namespace brivane
