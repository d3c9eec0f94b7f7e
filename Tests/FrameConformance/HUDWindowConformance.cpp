#include <gmock/gmock.h>

#include "Tests/FrameConformance/FrameUnderTest.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HUDWindowConformance : public FrameConformance {
 protected:
  Task count() {
    return [this] { ++completions; };
  }

  const std::unique_ptr<HUDWindow> window =
      frame.makeHUDWindow({.contentRect = {0, 0, 360, 54}, .level = statusWindowLevel});
  int completions = 0;
};

TEST_F(HUDWindowConformance, ANewWindowIsHiddenAndHasItsGivenFrame) {
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(window->frame(), (Rect{0, 0, 360, 54}));
}

TEST_F(HUDWindowConformance, AnExpectedWindowMayBeMadeAtOnceAndIsHiddenUntilOrderedIn) {
  frame.expectHUD();
  const auto expected =
      frame.makeHUDWindow({.contentRect = {0, 0, 360, 54}, .level = statusWindowLevel});
  EXPECT_FALSE(expected->isVisible());
  expected->orderFrontRegardless();
  underTest->pass(0.02);
  EXPECT_TRUE(expected->isVisible());
}

TEST_F(HUDWindowConformance, TheFrameIsAsSetWhetherShownOrNot) {
  window->setFrame({-1500.5, 130, 360, 54});
  EXPECT_EQ(window->frame(), (Rect{-1500.5, 130, 360, 54}));
  window->orderFrontRegardless();
  window->setFrame({20, 30, 360, 54});
  underTest->pass(0.02);
  EXPECT_EQ(window->frame(), (Rect{20, 30, 360, 54}));
}

TEST_F(HUDWindowConformance, VisibleMeansOrderedInWhateverTheAlpha) {
  window->setAlpha(0);
  window->orderFrontRegardless();
  EXPECT_TRUE(window->isVisible());
  window->orderFrontRegardless();
  EXPECT_TRUE(window->isVisible());
  window->orderOut();
  EXPECT_FALSE(window->isVisible());
  window->orderOut();
  window->setAlpha(1);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(HUDWindowConformance, AFadesCompletionRunsWhenItsTimeIsOver) {
  window->orderFrontRegardless();
  // Long enough that a busy machine comes here before the end.
  window->animateAlpha(0, 2, AnimationTiming::easeIn, count());
  underTest->pass(0.05);
  EXPECT_EQ(completions, 0);
  underTest->pass(2.1);
  EXPECT_EQ(completions, 1);
  EXPECT_TRUE(window->isVisible()) << "only the program hides the window";
}

TEST_F(HUDWindowConformance, ACompletionIsATaskOfItsOwnEvenWithoutDuration) {
  window->animateAlpha(1, 0, AnimationTiming::linear, count());
  EXPECT_EQ(completions, 0);
  underTest->pass(0.02);
  EXPECT_EQ(completions, 1);
}

TEST_F(HUDWindowConformance, ACompletionRunsAlthoughItsFadeWasEndedOrReplaced) {
  window->orderFrontRegardless();
  window->animateAlpha(0, 0.05, AnimationTiming::easeIn, count());
  window->setAlpha(1);
  window->animateAlpha(0, 0.05, AnimationTiming::easeIn, count());
  window->animateAlpha(1, 0, AnimationTiming::linear, {});
  underTest->pass(0.2);
  EXPECT_EQ(completions, 2);
}

TEST_F(HUDWindowConformance, ContentMayChangeAtAnyTime) {
  const DisplayList card = {FilledRectangle{{{0, 0, 360, 54}, 24}, Paint{Color{}}}};
  const DisplayList waiting = {Spinner{{22, 18, 18, 18}}};
  window->updateContent(card, ContentChange::animated);
  window->installContentView(waiting);
  window->orderFrontRegardless();
  window->updateContent(card, ContentChange::animated);
  underTest->pass(0.03);
  window->updateContent({}, ContentChange::animated);
  window->updateContent(waiting, ContentChange::immediate);
  underTest->pass(0.03);
  EXPECT_TRUE(window->isVisible());
}

TEST_F(HUDWindowConformance, AShownWindowsAnnouncementIsHeardOnce) {
  window->orderFrontRegardless();
  underTest->pass(0.02);
  EXPECT_THAT(underTest->heard(), IsEmpty()) << "nothing is said but what is announced";
  window->announce("Halden, 45%");
  window->updateContent({}, ContentChange::immediate);
  underTest->pass(0.02);
  EXPECT_THAT(underTest->heard(), ElementsAre("Halden, 45%"));
  window->announce("Norvik, -5%");
  underTest->pass(0.02);
  EXPECT_THAT(underTest->heard(), ElementsAre("Norvik, -5%"));
}

TEST_F(HUDWindowConformance, AHiddenWindowAnnouncesNothingThoughAnotherIsShown) {
  const auto other = frame.makeHUDWindow({.contentRect = {0, 0, 360, 54}});
  other->orderFrontRegardless();
  window->announce("Halden, 45%");
  window->orderFrontRegardless();
  window->orderOut();
  window->announce("Halden, 50%");
  underTest->pass(0.02);
  EXPECT_THAT(underTest->heard(), IsEmpty());
}

}  // namespace
}  // namespace brivane
