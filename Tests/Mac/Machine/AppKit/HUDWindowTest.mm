#include <gmock/gmock.h>

#include "Machines/Mac/Frame/HUDWindow.h"
#include "Machines/Mac/Frame/PictureView.h"
#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// As the program makes it.
constexpr HUDWindowAttributes asMade{.contentRect = {0, 0, 360, 54},
                                     .styleMask = 0,
                                     .backing = 2,
                                     .isDeferred = false,
                                     .isOpaque = false,
                                     .hasClearBackground = true,
                                     .hasShadow = true,
                                     .ignoresMouseEvents = true,
                                     .isReleasedWhenClosed = false,
                                     .hidesOnDeactivate = false,
                                     .level = 25,
                                     .collectionBehavior = 337,
                                     .animationBehavior = 2,
                                     .autoresizingMask = 18};

Primitive bar(double width) {
  return MaskedFill{{{0, 0, width, 6}, 3}, {0, 0, 200, 6}, Paint{Color{}}};
}

class MacHUDWindowTest : public AppKitTest {
 protected:
  NSWindow* systemWindow() { return desktop.windows.at(0); }
  std::vector<std::string> drawn() { return desktop.drawnBy(systemWindow().contentView); }

  std::unique_ptr<HUDWindow> window = frame.makeHUDWindow(asMade);
};

TEST_F(MacHUDWindowTest, ItHasTheAttributesThatTheProgramGives) {
  EXPECT_THAT(desktop.notes, ElementsAre("window, style 0, backing 2"));
  NSWindow* const made = systemWindow();
  EXPECT_EQ(made.level, 25);
  EXPECT_EQ(made.collectionBehavior, 337U);
  EXPECT_EQ(made.collectionBehavior, NSWindowCollectionBehaviorCanJoinAllSpaces |
                                         NSWindowCollectionBehaviorStationary |
                                         NSWindowCollectionBehaviorIgnoresCycle |
                                         NSWindowCollectionBehaviorFullScreenAuxiliary);
  EXPECT_EQ(made.animationBehavior, NSWindowAnimationBehaviorNone);
  EXPECT_FALSE(made.opaque);
  EXPECT_EQ(textOfColor(made.backgroundColor), "clear*0");
  EXPECT_TRUE(made.hasShadow);
  EXPECT_TRUE(made.ignoresMouseEvents);
  EXPECT_FALSE(made.releasedWhenClosed);
  EXPECT_FALSE(made.hidesOnDeactivate);
  EXPECT_FALSE(made.canHide);
}

TEST_F(MacHUDWindowTest, ItNeverTakesTheKeys) {
  EXPECT_FALSE(systemWindow().canBecomeKeyWindow);
  EXPECT_FALSE(systemWindow().canBecomeMainWindow);
}

TEST_F(MacHUDWindowTest, ItIsSeenInFrontOfTheActiveApplicationOnEverySpaceAndAsksForNoKeys) {
  window->setAlpha(1);
  window->orderFrontRegardless();
  EXPECT_TRUE([systemWindow() fakeIsSeen]);
  desktop.activeSpace = 2;
  desktop.isActiveSpaceFullScreen = true;
  EXPECT_TRUE([systemWindow() fakeIsSeen]);
  [NSApplication.sharedApplication hide:nil];
  EXPECT_TRUE([systemWindow() fakeIsSeen]) << "the editor's window goes alone";
  EXPECT_THAT(desktop.notes, ElementsAre("window, style 0, backing 2", "hide"));
  window->setAlpha(0);
  EXPECT_FALSE([systemWindow() fakeIsSeen]);
}

TEST_F(MacHUDWindowTest, ItIsSeenThoughTheApplicationWasHiddenBeforeAndLeavesTheOtherOneActive) {
  [NSApplication.sharedApplication hide:nil];
  window->orderFrontRegardless();
  EXPECT_TRUE([systemWindow() fakeIsSeen]);
  EXPECT_FALSE(desktop.isActive);
}

TEST_F(MacHUDWindowTest, ItsContentFillsItAndIsResizedWithItBothWays) {
  window->installContentView({});
  NSView* const view = systemWindow().contentView;
  EXPECT_EQ(view.frame.size.width, 360);
  EXPECT_EQ(view.frame.size.height, 54);
  EXPECT_EQ(view.autoresizingMask, 18U);
}

TEST_F(MacHUDWindowTest, ItMovesWithoutBeingDrawnAnew) {
  window->setFrame({10, 130, 360, 54});
  EXPECT_FALSE([systemWindow() fakeDisplayedLastFrame]);
}

TEST_F(MacHUDWindowTest, AFadeGoesThroughTheAnimatorEasingIn) {
  window->orderFrontRegardless();
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, {});
  const FakeFade fade = [systemWindow() fakeLastFade];
  EXPECT_EQ(fade.alpha, 0);
  EXPECT_EQ(fade.seconds, 0.28);
  EXPECT_EQ(fade.timing, "easeIn");
  bench.pass(0.3);
  EXPECT_EQ(systemWindow().alphaValue, 0);
}

TEST_F(MacHUDWindowTest, AFadeThatIsCutShortHasNoEffectAnyMore) {
  window->orderFrontRegardless();
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, {});
  bench.pass(0.1);
  window->animateAlpha(1, 0, AnimationTiming::linear, {});
  bench.pass(1);
  EXPECT_EQ(systemWindow().alphaValue, 1);
}

TEST_F(MacHUDWindowTest, AnAlphaThatIsSetDuringAFadeStays) {
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, {});
  window->setAlpha(0.3);
  bench.pass(1);
  EXPECT_EQ(systemWindow().alphaValue, 0.3);
}

TEST_F(MacHUDWindowTest, AFadeThatHasEndedByItselfIsNotEndedAgain) {
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, {});
  bench.pass(0.2);
  window->animateAlpha(0.2, 0.28, AnimationTiming::easeIn, {});
  bench.pass(0.2);
  window->setAlpha(0.7);
  EXPECT_EQ([systemWindow() fakeLastFade].seconds, 0) << "the first one's end isn't the second's";
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, {});
  bench.pass(1);
  window->setAlpha(0.5);
  EXPECT_EQ([systemWindow() fakeLastFade].seconds, 0.28);
  EXPECT_EQ(systemWindow().alphaValue, 0.5);
}

TEST_F(MacHUDWindowTest, AFadeMayEndAfterTheWindowHasGone) {
  int ends = 0;
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, [&] { ++ends; });
  window.reset();
  bench.pass(1);
  EXPECT_EQ(ends, 1);
}

TEST_F(MacHUDWindowTest, AWindowThatGoesIsTakenOffTheScreen) {
  window->orderFrontRegardless();
  NSWindow* const kept = systemWindow();
  window.reset();
  EXPECT_FALSE(kept.visible);
}

TEST_F(MacHUDWindowTest, ItShowsTheNewestPicture) {
  window->installContentView({bar(50)});
  window->updateContent({bar(100)}, ContentChange::immediate);
  EXPECT_THAT(drawn(), Contains(HasSubstr("line 97,0")));
}

TEST_F(MacHUDWindowTest, AChangeMovesFromTheOldPictureToTheNew) {
  window->installContentView({bar(50)});
  window->orderFrontRegardless();
  window->updateContent({bar(100)}, ContentChange::animated);
  EXPECT_THAT(drawn(), Contains(HasSubstr("line 47,0")));
  systemWindow().contentView.needsDisplay = NO;
  bench.pass(0.07);
  EXPECT_TRUE(systemWindow().contentView.needsDisplay);
  EXPECT_THAT(drawn(), Not(Contains(HasSubstr("line 47,0"))));
  EXPECT_THAT(drawn(), Not(Contains(HasSubstr("line 97,0"))));
  bench.pass(0.2);
  EXPECT_THAT(drawn(), Contains(HasSubstr("line 97,0")));
}

TEST_F(MacHUDWindowTest, NothingWakesTheProcessorOnceAChangeIsOver) {
  window->installContentView({bar(50)});
  window->orderFrontRegardless();
  window->updateContent({bar(100)}, ContentChange::animated);
  EXPECT_EQ(bench.runtime.timerCount(), 1U);
  bench.pass(0.3);
  EXPECT_EQ(bench.runtime.timerCount(), 0U);
}

TEST_F(MacHUDWindowTest, AChangeTakesAHundredAndFortyMilliseconds) {
  window->installContentView({bar(50)});
  window->orderFrontRegardless();
  window->updateContent({bar(100)}, ContentChange::animated);
  bench.pass(0.135);
  EXPECT_THAT(drawn(), Not(Contains(HasSubstr("line 97,0"))));
  EXPECT_EQ(bench.runtime.timerCount(), 1U);
  bench.pass(0.016);
  EXPECT_THAT(drawn(), Contains(HasSubstr("line 97,0")));
  EXPECT_EQ(bench.runtime.timerCount(), 0U) << "the next step is the last";
}

TEST_F(MacHUDWindowTest, AHiddenOrGoneWindowMovesNothing) {
  window->installContentView({bar(50)});
  window->updateContent({bar(60)}, ContentChange::animated);
  EXPECT_EQ(bench.runtime.timerCount(), 0U);
  window->orderFrontRegardless();
  window->updateContent({bar(100)}, ContentChange::animated);
  window->orderOut();
  EXPECT_EQ(bench.runtime.timerCount(), 0U);
  EXPECT_THAT(drawn(), Contains(HasSubstr("line 97,0")));
  window->orderFrontRegardless();
  window->updateContent({bar(50)}, ContentChange::animated);
  window.reset();
  EXPECT_EQ(bench.runtime.timerCount(), 0U);
}

TEST_F(MacHUDWindowTest, ASpinnerIsTheSystemsOwnAndTurnsOnWhileItStaysWhereItIs) {
  window->installContentView({Spinner{{22, 18, 18, 18}}});
  NSArray<NSView*>* views = [systemWindow().contentView fakeSubviews];
  ASSERT_EQ(views.count, 1U);
  auto* const spinner = static_cast<NSProgressIndicator*>(views[0]);
  EXPECT_TRUE([spinner fakeIsTurning]);
  EXPECT_EQ(spinner.style, NSProgressIndicatorStyleSpinning);
  EXPECT_EQ(spinner.controlSize, NSControlSizeSmall);
  EXPECT_TRUE(spinner.indeterminate);
  EXPECT_EQ(spinner.frame.origin.x, 22);
  window->updateContent({Spinner{{22, 18, 18, 18}}, bar(10)}, ContentChange::animated);
  EXPECT_EQ([systemWindow().contentView fakeSubviews][0], spinner);
  window->updateContent({bar(10)}, ContentChange::immediate);
  EXPECT_EQ([systemWindow().contentView fakeSubviews].count, 0U);
}

TEST_F(MacHUDWindowTest, AnAnnouncementIsHeardAlthoughTheScreenReaderIsTalking) {
  window->orderFrontRegardless();
  desktop.isTalking = true;
  window->announce("Halden, 45%");
  EXPECT_THAT(desktop.heard, ElementsAre("Halden, 45%"));
}

TEST_F(MacHUDWindowTest, TheCardReadsAsTheTextThatItShows) {
  window->installContentView({bar(50), TextRun{.box = {}, .text = "Connecting", .paint = Color{}},
                              TextRun{.box = {}, .text = "Halden · 3", .paint = Color{}}});
  NSView* const card = systemWindow().contentView;
  EXPECT_EQ(textOf([card fakeRole]), textOf(NSAccessibilityStaticTextRole));
  EXPECT_EQ(textOf([card accessibilityValue]), "Connecting\nHalden · 3");
  window->updateContent({bar(50), TextRun{.box = {}, .text = "45", .paint = Color{}}},
                        ContentChange::immediate);
  EXPECT_EQ(textOf([card accessibilityValue]), "45");
}

TEST_F(MacHUDWindowTest, ANewViewHasANewShadow) {
  window->installContentView({});
  EXPECT_THAT(desktop.takeNotes(), Contains("shadow anew"));
  EXPECT_THAT(drawn(), IsEmpty());
  EXPECT_THAT(desktop.takeNotes(), ElementsAre("shadow anew")) << "only now it has an outline";
  EXPECT_THAT(drawn(), IsEmpty());
  EXPECT_THAT(desktop.takeNotes(), IsEmpty());
}

}  // namespace
}  // namespace brivane
