#include <gmock/gmock.h>

#include "Tests/FrameConformance/FrameUnderTest.h"

namespace brivane {
namespace {

using testing::ElementsAre;

class MenuConformance : public FrameConformance, public MenuDelegate {
 protected:
  MenuConformance() {
    statusItem->configureButton(
        {{FilledRectangle{{{0, 0, 8, 8}, 2}, Paint{Color{}}}}, 8, 8, "it", {0, 0, 8, 8}});
    menu.setDelegate(this);
    menu.setItems(items());
  }

  void menuWillOpen() override {
    notes.emplace_back("will open");
    if (onOpen) onOpen();
  }
  void menuDidClose() override {
    notes.emplace_back("did close");
    if (onClose) onClose();
  }

  std::vector<MenuItem> items() {
    return {MenuText{"Halden"},
            slider("Halden"),
            MenuSeparator{},
            command("Retry"),
            MenuText{"Norvik", MenuTone::tertiaryLabel},
            slider("Norvik")};
  }
  MenuCommand command(const std::string& title) {
    return {title, false, "", [this, title] { notes.push_back(title); }};
  }
  MenuSlider slider(const std::string& name) {
    return {0, 100, 50, name, [this, name](double value) {
              notes.push_back(name + " " + std::to_string(static_cast<int>(value)));
              if (onMove) onMove();
            }};
  }

  // Above the menu, which notifies its delegate when destroyed while open.
  std::vector<std::string> notes;
  Task onOpen;
  Task onClose;
  Task onMove;
  const std::unique_ptr<StatusItem> statusItem = frame.makeStatusItem();
  MenuView& menu = statusItem->menu();
};

TEST_F(MenuConformance, TheDelegateIsNotifiedOfOpeningAndClosing) {
  underTest->openMenu();
  underTest->closeMenu();
  underTest->openMenu();
  underTest->closeMenu();
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "will open", "did close"));
}

TEST_F(MenuConformance, ItemsSetAsTheMenuOpensAreShown) {
  onOpen = [this] { menu.setItems({command("New")}); };
  underTest->openMenu();
  underTest->choose("New");
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "New"));
}

TEST_F(MenuConformance, ACommandIsCalledAfterTheMenuHasClosed) {
  underTest->openMenu();
  underTest->choose("Retry");
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "Retry"));
}

TEST_F(MenuConformance, AChosenCommandMayReplaceAllItems) {
  auto renewed = items();
  std::get<MenuCommand>(renewed[3]).chosen = [this] {
    menu.setItems({});
    notes.emplace_back("replaced");
  };
  menu.setItems(std::move(renewed));
  underTest->openMenu();
  underTest->choose("Retry");
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "replaced"));
}

TEST_F(MenuConformance, ACommandWhoseItemsAreReplacedAsTheMenuClosesIsNotCalled) {
  onClose = [this] { menu.setItems(items()); };
  underTest->openMenu();
  underTest->choose("Retry");
  EXPECT_THAT(notes, ElementsAre("will open", "did close"));
}

TEST_F(MenuConformance, EveryMoveOfASliderIsReportedWithItsNewValue) {
  underTest->openMenu();
  onMove = [this] { EXPECT_EQ(menu.sliderValue(1), 80); };
  underTest->drag(0, 80);
  onMove = {};
  underTest->drag(1, 0);
  EXPECT_THAT(notes, ElementsAre("will open", "Halden 80", "Norvik 0"));
  EXPECT_EQ(menu.sliderValue(5), 0);
}

TEST_F(MenuConformance, AValueThatTheProgramSetsIsNotReported) {
  underTest->openMenu();
  menu.setSliderValue(1, 12.5);
  EXPECT_EQ(menu.sliderValue(1), 12.5);
  EXPECT_THAT(notes, ElementsAre("will open"));
}

TEST_F(MenuConformance, AMoveMayReplaceTheItemsAndTheNewSliderReportsMoves) {
  underTest->openMenu();
  onMove = [this] { menu.setItems(items()); };
  underTest->drag(0, 60);
  EXPECT_EQ(menu.sliderValue(1), 50) << "a new slider has its given value";
  onMove = {};
  underTest->drag(0, 70);
  EXPECT_THAT(notes, ElementsAre("will open", "Halden 60", "Halden 70"));
}

TEST_F(MenuConformance, TitlesAndTicksChangeInAnOpenMenu) {
  underTest->openMenu();
  menu.setTitle(0, "Halden 61 %");
  menu.setTitle(3, "Try again");
  menu.setChecked(3, true);
  menu.setChecked(3, false);
  underTest->choose("Try again");
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "Retry"));
}

TEST_F(MenuConformance, ADraggedSliderKeepsItsValueWhileOtherItemsChange) {
  underTest->openMenu();
  underTest->drag(0, 60);
  menu.setTitle(0, "Halden 60 %");
  menu.setTitle(4, "Norvik, no answer for a long time");
  menu.setChecked(3, true);
  menu.setSliderValue(5, 20);
  underTest->pass(0.05);
  EXPECT_EQ(menu.sliderValue(1), 60);
  underTest->drag(0, 70);
  EXPECT_THAT(notes, ElementsAre("will open", "Halden 60", "Halden 70"));
}

TEST_F(MenuConformance, RepeatedPopUpsOpenTheMenuOnce) {
  menu.popUp();
  menu.popUp();
  underTest->pass(0.05);
  menu.popUp();
  underTest->pass(0.05);
  EXPECT_THAT(notes, ElementsAre("will open"));
  underTest->choose("Retry");
  underTest->pass(0.05);
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "Retry"));
  menu.popUp();
  underTest->pass(0.05);
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "Retry", "will open"));
}

TEST_F(MenuConformance, PopUpLeavesAMenuOpenThatTheUserOpened) {
  underTest->openMenu();
  menu.popUp();
  underTest->pass(0.05);
  underTest->choose("Retry");
  underTest->pass(0.05);
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "Retry"));
}

TEST_F(MenuConformance, TheMainQueueRunsWhileTheMenuIsOpen) {
  underTest->openMenu();
  int ticks = 0;
  const TimerID timer = underTest->runtime().every(fromSeconds(0.01), [&] { ++ticks; });
  for (int turns = 0; turns < 500 && ticks < 3; ++turns) underTest->pass(0.1);
  underTest->runtime().cancel(timer);
  EXPECT_GE(ticks, 3);
  EXPECT_THAT(notes, ElementsAre("will open"));
}

}  // namespace
}  // namespace brivane
