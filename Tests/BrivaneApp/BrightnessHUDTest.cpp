#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "BrivaneApp/BrightnessHUD.h"
#include "Tests/Support/DescribedDisplayList.h"
#include "Tests/Support/FakeFrame.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr DisplayID left = 1;
constexpr DisplayID right = 2;

HUDModel::State level(std::int64_t percent) {
  return HUDModel::Level{percent};
}

struct BrightnessHUDTest : testing::Test {
  BrightnessHUDTest() {
    machine.bundles.files["Brivane_BrivaneUI.bundle/Colors.catalogue"] =
        "LevelBarNormalFill light 0 0 0 1\nLevelBarNormalFill dark 1 1 1 1\n"
        "LevelBarTrack light 0 0 0 0.1\nLevelBarTrack dark 1 1 1 0.1\n"
        "BoostColor light 1 0.25 0 1\nBoostColor dark 1 0.75 0 1\n";
    machine.displaySystem.allScreens = {{left, {0, 0, 1920, 1080}, "Left", 1.0},
                                        {right, {1920, -200, 2560, 1440}, "Right", 1.0}};
    machine.displaySystem.main = machine.displaySystem.allScreens[0];
  }

  FakeHUDWindow& window() { return *frame.hudWindow; }
  void wait(int duration) { machine.time.runFor(milliseconds(duration)); }
  std::string shown() { return describe(window().content); }
  bool isHidden() { return !hud->isVisible() && window().alpha == 0; }
  bool isShown() { return hud->isVisible() && window().alpha == 1; }

  FakeMachine machine;
  FakeFrame frame{machine.time, machine.notes};
  CatalogColor colors{machine.resources(), machine.log()};
  const StringCatalogue strings{machine.resources(), machine.log(), "none"};
  std::unique_ptr<BrightnessHUD> hud =
      std::make_unique<BrightnessHUD>(machine, frame, colors, strings);
};

TEST_F(BrightnessHUDTest, NothingIsOnTheScreenBeforeTheFirstPresent) {
  EXPECT_EQ(frame.hudWindowsMade, 0);
  EXPECT_FALSE(hud->isVisible());
  hud->dismiss();
  EXPECT_EQ(frame.hudWindowsMade, 0);
}

TEST_F(BrightnessHUDTest, TheWindowIsBorderlessClickThroughAndAboveOthersOnEverySpace) {
  hud->present(level(40), left, 1.2);
  HUDWindowAttributes expected;
  expected.contentRect = {0, 0, 360, 54};
  expected.styleMask = 0;
  expected.backing = 2;
  expected.isDeferred = false;
  expected.isOpaque = false;
  expected.hasClearBackground = true;
  expected.hasShadow = true;
  expected.ignoresMouseEvents = true;
  expected.isReleasedWhenClosed = false;
  expected.hidesOnDeactivate = false;
  expected.level = 25;
  expected.collectionBehavior = 337;
  expected.animationBehavior = 2;
  expected.autoresizingMask = 18;
  EXPECT_EQ(window().attributes, expected);
}

TEST_F(BrightnessHUDTest, OneWindowServesEveryPresent) {
  hud->present(level(40), left, 0.1);
  wait(1000);
  hud->present(level(50), right, 0.1);
  hud->dismiss();
  hud->present(level(60), left, 0.1);
  EXPECT_EQ(frame.hudWindowsMade, 1);
  EXPECT_EQ(window().installations, 1);
}

TEST_F(BrightnessHUDTest, AFirstPresentMovesShowsSetsTheAlphaAndComesToTheFrontInThisOrder) {
  machine.notes.take();
  hud->present(level(40), left, 1.2);
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] new HUD view", "[0] move HUD", "[0] HUD content at once",
                          "[0] HUD alpha 1", "[0] HUD front"));
  EXPECT_TRUE(isShown());
}

TEST_F(BrightnessHUDTest, APresentOfAHiddenHUDSetsTheAlphaDirectlyAgain) {
  hud->present(level(40), left, 1.2);
  wait(2000);
  machine.notes.take();
  hud->present(level(45), left, 1.2);
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[2000] HUD content at once", "[2000] HUD alpha 1", "[2000] HUD front"));
}

TEST_F(BrightnessHUDTest, AnUpdateCancelsARunningFadeThroughTheAnimatorAndComesToTheFront) {
  hud->present(level(40), left, 1.2);
  wait(1300);
  machine.notes.take();
  hud->present(level(45), left, 1.2);
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[1300] HUD content moves", "[1300] HUD alpha to 1 in 0 linear",
                          "[1300] HUD front"));
}

TEST_F(BrightnessHUDTest, AJumpToAnotherDisplayMovesTheWindowBeforeItShowsTheNewContent) {
  hud->present(level(40), left, 1.2);
  machine.notes.take();
  hud->present(level(45), right, 1.2);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] move HUD", "[0] HUD content at once",
                                                "[0] HUD alpha to 1 in 0 linear", "[0] HUD front"));
}

TEST_F(BrightnessHUDTest, TheHUDShowsTheLevelAndTheConnectingCard) {
  hud->present(level(40), left, 1.2);
  EXPECT_THAT(shown(), HasSubstr("text \"40\""));
  EXPECT_EQ(hud->model().state(), level(40));
  hud->present(HUDModel::Connecting{"LG", 3}, left, 4.0);
  EXPECT_THAT(shown(), AllOf(HasSubstr("LG · "), HasSubstr("spinner")));
}

TEST_F(BrightnessHUDTest, TheHUDStands130PointsAboveTheMiddleOfTheScreensLowerEdge) {
  hud->present(level(40), left, 1.2);
  EXPECT_EQ(window().frame(), (Rect{960 - 180, 130, 360, 54}));
  hud->present(level(40), right, 1.2);
  EXPECT_EQ(window().frame(), (Rect{1920 + 1280 - 180, -200 + 130, 360, 54}));
}

TEST_F(BrightnessHUDTest, AnUnknownDisplayIsShownOnTheMainScreen) {
  machine.displaySystem.main = machine.displaySystem.allScreens[1];
  hud->present(level(40), 99, 1.2);
  EXPECT_EQ(window().frame().x, 1920 + 1280 - 180);
  EXPECT_TRUE(isShown());
}

TEST_F(BrightnessHUDTest, WithoutAMainScreenTheFirstScreenIsUsed) {
  machine.displaySystem.main = std::nullopt;
  hud->present(level(40), 99, 1.2);
  EXPECT_EQ(window().frame(), (Rect{780, 130, 360, 54}));
}

TEST_F(BrightnessHUDTest, AScreenWithoutANumberIsUsedAsMainScreenOnly) {
  machine.displaySystem.allScreens[1].number = std::nullopt;
  hud->present(level(40), right, 1.2);
  EXPECT_EQ(window().frame(), (Rect{780, 130, 360, 54}));
}

TEST_F(BrightnessHUDTest, WithoutScreensTheWindowStaysWhereItIs) {
  hud->present(level(40), right, 1.2);
  const Rect before = window().frame();
  machine.displaySystem.allScreens.clear();
  machine.displaySystem.main = std::nullopt;
  machine.notes.take();
  hud->present(level(45), left, 1.2);
  EXPECT_EQ(window().frame(), before);
  EXPECT_THAT(machine.notes.take(), testing::Not(testing::Contains(HasSubstr("move"))));
  EXPECT_TRUE(isShown());
}

TEST_F(BrightnessHUDTest, AWindowThatIsInPlaceIsNotMovedAgain) {
  hud->present(level(40), left, 1.2);
  machine.notes.take();
  wait(3000);
  hud->present(level(45), left, 1.2);
  EXPECT_THAT(machine.notes.take(), testing::Not(testing::Contains(HasSubstr("move"))));
}

TEST_F(BrightnessHUDTest, OnlyAnUpdateOnTheSameDisplayWhileVisibleMayAnimate) {
  hud->present(level(40), left, 1.2);
  EXPECT_EQ(window().lastChange, ContentChange::immediate) << "the HUD appears";
  hud->present(level(45), left, 1.2);
  EXPECT_EQ(window().lastChange, ContentChange::animated) << "the HUD is updated in place";
  hud->present(level(50), right, 1.2);
  EXPECT_EQ(window().lastChange, ContentChange::immediate) << "the HUD jumps to another display";
  hud->present(level(55), right, 1.2);
  EXPECT_EQ(window().lastChange, ContentChange::animated);
  hud->dismiss();
  hud->present(level(60), right, 1.2);
  EXPECT_EQ(window().lastChange, ContentChange::immediate) << "the HUD appears on the same display";
}

TEST_F(BrightnessHUDTest, AShownHUDMovesToAnotherDisplayWithTheNewLevelAtOnce) {
  hud->present(level(40), left, 1.2);
  hud->present(level(75), right, 1.2);
  EXPECT_EQ(window().frame().x, 1920 + 1280 - 180);
  EXPECT_THAT(shown(), HasSubstr("text \"75\""));
  EXPECT_EQ(window().lastChange, ContentChange::immediate);
}

TEST_F(BrightnessHUDTest, TheHUDFadesWhenItsTimeIsOverAndHidesTwentyEightHundredthsLater) {
  hud->present(level(40), left, 1.2);
  machine.notes.take();
  wait(1199);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  wait(1);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[1200] HUD alpha to 0 in 0.28 ease-in"));
  EXPECT_TRUE(hud->isVisible());
  wait(279);
  EXPECT_TRUE(hud->isVisible());
  wait(1);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[1480] HUD out", "[1480] HUD alpha 0"));
  EXPECT_TRUE(isHidden());
}

TEST_F(BrightnessHUDTest, AfterTwoPresentsHalfASecondApartTheSecondDecidesWhenTheHUDHides) {
  hud->present(level(40), left, 1.2);
  wait(500);
  hud->present(level(45), left, 1.2);
  EXPECT_EQ(machine.time.timerCount(), 2u) << "the first timers, to fade and to speak, are gone";
  wait(1199);
  EXPECT_TRUE(isShown());
  wait(1);
  EXPECT_EQ(window().alpha, 0);
  wait(280);
  EXPECT_TRUE(isHidden());
}

TEST_F(BrightnessHUDTest, APresentDuringTheFadeBringsTheHUDBackAndTheOldFadesEndHidesNothing) {
  hud->present(level(40), left, 1.2);
  wait(1300);
  EXPECT_EQ(window().alpha, 0);
  hud->present(level(45), left, 1.2);
  EXPECT_EQ(window().lastChange, ContentChange::animated);
  EXPECT_TRUE(isShown());
  wait(1000);
  EXPECT_TRUE(isShown());
  wait(480);
  EXPECT_TRUE(isHidden());
}

TEST_F(BrightnessHUDTest, AShorterPresentReplacesALongerOne) {
  hud->present(HUDModel::Connecting{"LG", 3}, left, 4.0);
  hud->present(level(40), left, 1.2);
  wait(1480);
  EXPECT_TRUE(isHidden());
  machine.notes.take();
  wait(5000);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(BrightnessHUDTest, DismissHidesTheHUDAtOnceAndCancelsTheTimer) {
  hud->present(level(40), left, 1.2);
  machine.notes.take();
  hud->dismiss();
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] HUD out", "[0] HUD alpha 0"));
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(BrightnessHUDTest, DismissDuringTheFadeHidesTheHUDAtOnce) {
  hud->present(level(40), left, 1.2);
  wait(1300);
  hud->dismiss();
  EXPECT_TRUE(isHidden());
  wait(1000);
  EXPECT_TRUE(isHidden());
}

TEST_F(BrightnessHUDTest, APresentAfterADismissalDuringTheFadeStaysForItsWholeTime) {
  hud->present(level(40), left, 1.2);
  wait(1300);
  hud->dismiss();
  hud->present(level(45), left, 1.2);
  wait(1199);
  EXPECT_TRUE(isShown());
  wait(281);
  EXPECT_TRUE(isHidden());
}

TEST_F(BrightnessHUDTest, TheEndOfADismissedFadeHidesTheHUDAgain) {
  hud->present(level(40), left, 1.2);
  wait(1300);
  hud->dismiss();
  machine.notes.take();
  wait(180);
  EXPECT_THAT(machine.notes.take(), ElementsAre("[1480] HUD out", "[1480] HUD alpha 0"));
}

TEST_F(BrightnessHUDTest, FromAnotherThreadPresentAndDismissTakeEffectOnTheMainThread) {
  std::thread([&] { hud->present(level(40), left, 1.2); }).join();
  EXPECT_EQ(frame.hudWindowsMade, 0);
  wait(0);
  EXPECT_TRUE(isShown());
  EXPECT_THAT(shown(), HasSubstr("text \"40\""));
  std::thread([&] { hud->dismiss(); }).join();
  EXPECT_TRUE(isShown());
  wait(0);
  EXPECT_TRUE(isHidden());
}

TEST_F(BrightnessHUDTest, LateCallsFromAnotherThreadDoNothing) {
  std::thread([&] {
    hud->present(level(40), left, 1.2);
    hud->dismiss();
  }).join();
  hud.reset();
  machine.notes.take();
  wait(1000);
  EXPECT_EQ(frame.hudWindowsMade, 0);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(BrightnessHUDTest, ASwitchToDarkWhileHiddenShowsTheRebuiltViewAtTheNextPresent) {
  hud->present(level(150), left, 0.1);
  EXPECT_THAT(shown(), HasSubstr("rgba(1 0.25 0 1)"));
  wait(1000);
  frame.app.change(Appearance::dark);
  wait(0);
  hud->present(level(160), left, 0.1);
  EXPECT_EQ(window().installations, 2);
  EXPECT_THAT(shown(), AllOf(HasSubstr("text \"160\""), HasSubstr("rgba(1 0.75 0 1)")));
}

TEST_F(BrightnessHUDTest, ASwitchWhileShownRebuildsTheViewOnTheMainQueueWithTheSameState) {
  hud->present(level(150), left, 5);
  frame.app.change(Appearance::dark);
  EXPECT_EQ(window().installations, 1);
  wait(0);
  EXPECT_EQ(window().installations, 2);
  EXPECT_THAT(shown(), AllOf(HasSubstr("text \"150\""), HasSubstr("rgba(1 0.75 0 1)")));
  frame.app.change(Appearance::light);
  wait(0);
  EXPECT_EQ(window().installations, 3);
  EXPECT_THAT(shown(), HasSubstr("rgba(1 0.25 0 1)"));
}

TEST_F(BrightnessHUDTest, TheFirstViewIsMadeForTheAppearanceInForce) {
  frame.app.change(Appearance::dark);
  hud->present(level(150), left, 5);
  EXPECT_THAT(shown(), HasSubstr("rgba(1 0.75 0 1)"));
  EXPECT_EQ(window().installations, 1);
}

TEST_F(BrightnessHUDTest, ADroppedHUDLeavesNoWindowTimerOrObserver) {
  hud->present(level(40), left, 1.2);
  frame.app.change(Appearance::dark);
  EXPECT_EQ(frame.app.appearanceTopic.observerCount(), 1u);
  hud.reset();
  EXPECT_EQ(frame.hudWindow, nullptr);
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_EQ(frame.app.appearanceTopic.observerCount(), 0u);
  machine.notes.take();
  wait(5000);
  EXPECT_THAT(machine.notes.take(), IsEmpty()) << "the rebuild for the dark appearance is dropped";
}

TEST_F(BrightnessHUDTest, AHUDDroppedDuringTheFadeIsNotTouchedByItsEnd) {
  hud->present(level(40), left, 1.2);
  wait(1300);
  hud.reset();
  machine.notes.take();
  wait(1000);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

}  // namespace
}  // namespace brivane
