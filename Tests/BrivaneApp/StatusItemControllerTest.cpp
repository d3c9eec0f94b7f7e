#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

#include "BrivaneApp/StatusItemController.h"
#include "BrivaneUI/AppIconArtwork.h"
#include "Tests/Support/ApplicationTexts.h"
#include "Tests/Support/ControllerBench.h"
#include "Tests/Support/FakeFrame.h"
#include "Tests/Support/WhenDropped.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct StatusItemControllerTest : testing::Test, ControllerBench {
  /// Symbols are looked up once, so Apple displays must be added before the first look-up.
  StatusItemControllerTest() { machine.displayServices.install(machine.loader); }

  FakeStatusItem& item() { return *frame.statusItem; }
  FakeMenu& menu() { return item().ownMenu; }

  /// The menu's lines up to the first separator.
  std::vector<std::string> displayLines() {
    auto lines = menu().lines();
    lines.erase(std::ranges::find(lines, "separator"), lines.end());
    return lines;
  }
  bool isTicked(const std::string& title) {
    const auto lines = menu().lines();
    return std::ranges::count(lines, "command [x] " + title) == 1;
  }
  void pass(Microseconds duration) { machine.time.runFor(duration); }

  void refresh() {
    status->refresh();
    machine.time.settle();
  }
  /// Whether a refresh rebuilds the open menu.
  bool rebuildsAtRefresh() {
    const int before = menu().rebuilds;
    refresh();
    return menu().rebuilds > before;
  }
  void addAppleDisplay5() { addAppleDisplay({5, 1552, 5, 1, false}, 0.3F); }

  FakeFrame frame{machine.time, machine.notes};
  StringCatalogue texts = applicationTexts(machine);
  std::unique_ptr<StatusItemController> status =
      std::make_unique<StatusItemController>(machine, frame, texts, controller);
};

// The button

TEST_F(StatusItemControllerTest, TheButtonShowsTheIconAndTheProductsName) {
  ASSERT_TRUE(item().button.has_value());
  EXPECT_EQ(item().button->icon, AppIconArtwork().body());
  EXPECT_EQ(item().button->iconWidth, AppIconArtwork::canvas);
  EXPECT_EQ(item().button->iconHeight, AppIconArtwork::canvas);
  EXPECT_EQ(item().button->toolTip, "menu.tooltip");
}

// Building

TEST_F(StatusItemControllerTest, WithoutDisplaysTheMenuSaysSoAndHoldsHotkeysAndCommands) {
  menu().open();
  EXPECT_THAT(
      menu().lines(),
      ElementsAre("text tertiary menu.noDisplays", "separator",
                  "text secondary menu.hotkeys.summary (⌃⌥↑, ⌃⌥↓)",
                  "command [ ] menu.changeHotkeys", "command [x] menu.useSystemBrightnessKeys",
                  "separator", "command [ ] menu.restoreSavedBrightness",
                  "command [ ] menu.undimAll", "command [ ] menu.retryDisconnected", "separator",
                  "command [ ] menu.launchAtLogin", "command [ ] menu.quit key q"));
}

TEST_F(StatusItemControllerTest, EachDisplayHasASliderOrAStatusInTheSystemsOrder) {
  machine.displaySystem.add({7, 1, 7, 1, true}, "Panel");
  addAnsweringMonitor(3, 55);
  addSilentMonitor(2);
  addAppleDisplay({5, 1552, 5, 1, false}, 0.3F);
  machine.displaySystem.add({8, 1, 8, 1, false}, "Monitor 8");
  menu().open();
  EXPECT_THAT(
      displayLines(),
      ElementsAre("text tertiary menu.display.statusTitle (Panel, menu.display.builtIn)",
                  "text label menu.display.levelTitle (Monitor 3, 55)",
                  "slider -100..200 55 menu.slider.accessibilityLabel (Monitor 3)",
                  "text tertiary menu.display.statusTitle (Monitor 2, menu.display.retryingNow)",
                  "text label menu.display.levelTitle (Apple 5, 30)",
                  "slider -100..200 30 menu.slider.accessibilityLabel (Apple 5)",
                  "text tertiary menu.display.statusTitle (Monitor 8, menu.display.retryingNow)"));
}

TEST_F(StatusItemControllerTest, ABuiltInPanelWithALevelHasASlider) {
  addAppleDisplay({5, 1552, 5, 1, true}, 0.4F);
  menu().open();
  EXPECT_THAT(displayLines(), Contains("text label menu.display.levelTitle (Apple 5, 40)"));
}

TEST_F(StatusItemControllerTest, ADisplayThatIsNotRetriedSaysNoDDC) {
  addAppleDisplay({5, 1552, 5, 1, false}, 0.4F);
  machine.displayServices.getStatus = 1;
  menu().open();
  EXPECT_THAT(displayLines(),
              ElementsAre("text tertiary menu.display.statusTitle (Apple 5, menu.display.noDDC)"));
}

TEST_F(StatusItemControllerTest, TheMenuShowsSoftwareLevelsToo) {
  addAnsweringMonitor(3, 55);
  controller.setLevel(-20, 3);
  menu().open();
  EXPECT_THAT(displayLines(),
              ElementsAre("text label menu.display.levelTitle (Monitor 3, -20)",
                          "slider -100..200 -20 menu.slider.accessibilityLabel (Monitor 3)"));
}

TEST_F(StatusItemControllerTest, TheSlidersRangeFollowsTheSettings) {
  addAnsweringMonitor(3, 55);
  struct Case {
    bool dimming, brightening;
    std::string slider;
  };
  for (const auto& [dimming, brightening, slider] :
       std::vector<Case>{{true, true, "slider -100..200 55"},
                         {true, false, "slider -100..100 55"},
                         {false, true, "slider 0..200 55"},
                         {false, false, "slider 0..100 55"}}) {
    set("SubZeroDimming", dimming);
    set("BrightenPastMaximum", brightening);
    menu().open();
    EXPECT_THAT(displayLines().at(1), testing::StartsWith(slider));
    menu().close();
  }
}

TEST_F(StatusItemControllerTest, TheHotkeySummaryShowsTheUsersOwnBindings) {
  HotkeyBindingStore(machine.settings).setBrightnessUpBinding({96, HotkeyBinding::command});
  menu().open();
  EXPECT_THAT(menu().lines(), Contains("text secondary menu.hotkeys.summary (⌘F5, ⌃⌥↓)"));
}

TEST_F(StatusItemControllerTest, TicksShowTheRelaySettingAndTheLoginItem) {
  set("SystemBrightnessKeysEnabled", false);
  machine.userSession.files[FakeSession::launchAgentFile] = 0;
  machine.processRunner.results = {FinishedProcess{0, ""}};
  menu().open();
  EXPECT_FALSE(isTicked("menu.useSystemBrightnessKeys"));
  EXPECT_TRUE(isTicked("menu.launchAtLogin"));
  machine.processRunner.results = {FinishedProcess{0, "\"com.quorrel.brivane\" => disabled"}};
  menu().open();
  EXPECT_FALSE(isTicked("menu.launchAtLogin"));
}

TEST_F(StatusItemControllerTest, EachOpeningRebuildsTheMenu) {
  menu().open();
  menu().close();
  addAnsweringMonitor(3, 55);
  menu().open();
  EXPECT_EQ(menu().rebuilds, 2);
  EXPECT_THAT(displayLines(), SizeIs(2));
}

// Sliders

TEST_F(StatusItemControllerTest, ASliderMovesItsDisplayOnTheJointScale) {
  addSilentMonitor(4).answers = true;
  auto& channel = addAnsweringMonitor(3, 55);
  controller.brightness(4);
  menu().open();
  constexpr std::size_t sliderOf3 = 3;
  menu().drag(sliderOf3, 70);
  EXPECT_EQ(channel.current, 70);
  pass(milliseconds(100));
  menu().drag(sliderOf3, -30);
  EXPECT_EQ(controller.level(3), -30);
  EXPECT_EQ(channel.current, 0);
  EXPECT_EQ(controller.level(4), 50);
}

TEST_F(StatusItemControllerTest, TheLastMoveIsWrittenAfterTheMenuHasClosed) {
  auto& channel = addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, 70);
  menu().drag(1, 71);
  menu().close();
  pass(milliseconds(100));
  EXPECT_EQ(channel.current, 71);
}

TEST_F(StatusItemControllerTest, ADragSurvivesRefreshesOfTheSameDisplays) {
  auto& channel = addAnsweringMonitor(3, 20);
  addSilentMonitor(2);
  menu().open();
  const Instant start = machine.time.now();
  for (int step = 0; step <= 100; ++step) {
    const double position = 20 + 0.5 * step;
    menu().drag(1, position);
    status->refresh();
    pass(milliseconds(10));
    ASSERT_EQ(menu().sliderValue(1), position) << step;
  }
  const auto writes = channel.setCount / 2;
  EXPECT_LE(writes, 1 + (machine.time.now() - start) / milliseconds(70));
  pass(milliseconds(500));
  EXPECT_EQ(channel.current, 70);
  EXPECT_EQ(menu().rebuilds, 1);
}

TEST_F(StatusItemControllerTest, ARemovedSliderFirstWritesItsPendingValue) {
  auto& channel = addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, 70);
  menu().drag(1, 71);
  addAppleDisplay5();
  ASSERT_TRUE(rebuildsAtRefresh());
  EXPECT_EQ(channel.current, 71);
  EXPECT_THAT(displayLines(),
              Contains("slider -100..200 71 menu.slider.accessibilityLabel (Monitor 3)"));
}

TEST_F(StatusItemControllerTest, ThePendingValueOfAnUnpluggedDisplayIsNotWritten) {
  auto& channel = addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, 70);
  menu().drag(1, 71);
  machine.displaySystem.online.clear();
  ASSERT_TRUE(rebuildsAtRefresh());
  pass(milliseconds(200));
  EXPECT_EQ(channel.current, 70);
  EXPECT_THAT(displayLines(), ElementsAre("text tertiary menu.noDisplays"));
}

TEST_F(StatusItemControllerTest, AfterARebuildTheNewSliderWorks) {
  auto& channel = addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, 70);
  addAppleDisplay5();
  ASSERT_TRUE(rebuildsAtRefresh());
  pass(milliseconds(20));
  menu().drag(1, 72);
  EXPECT_EQ(channel.current, 72) << "the new row has written nothing yet";
}

// Live updates

TEST_F(StatusItemControllerTest, AnOpenMenuFollowsLevelsEveryQuarterSecondWithoutARebuild) {
  addAnsweringMonitor(3, 55);
  menu().open();
  controller.setBrightness(30, 3);
  pass(milliseconds(229));
  EXPECT_THAT(displayLines().at(0), "text label menu.display.levelTitle (Monitor 3, 55)");
  pass(milliseconds(250));
  EXPECT_THAT(displayLines(),
              ElementsAre("text label menu.display.levelTitle (Monitor 3, 30)",
                          "slider -100..200 30 menu.slider.accessibilityLabel (Monitor 3)"));
  EXPECT_EQ(menu().rebuilds, 1);
}

TEST_F(StatusItemControllerTest, LiveUpdatesComeExactlyFourTimesASecond) {
  addAppleDisplay({5, 1552, 5, 1, false}, 0.3F);
  menu().open();
  for (int tick = 1; tick <= 4; ++tick) {
    const auto before = displayLines().front();
    machine.displayServices.levels[5] = 0.3F + 0.1F * static_cast<float>(tick);
    pass(milliseconds(249));
    EXPECT_EQ(displayLines().front(), before);
    pass(milliseconds(1));
    EXPECT_NE(displayLines().front(), before);
  }
}

TEST_F(StatusItemControllerTest, ALiveUpdateNeverMovesADraggedSlider) {
  auto& channel = addAnsweringMonitor(3, 55);
  menu().open();
  for (int step = 0; step <= 300; ++step) {
    const double position = 20 + 0.2 * step;
    menu().drag(1, position);
    pass(milliseconds(10));
    ASSERT_EQ(menu().sliderValue(1), position) << step;
  }
  pass(milliseconds(500));
  EXPECT_EQ(menu().sliderValue(1), 80);
  EXPECT_EQ(channel.current, 80);
  EXPECT_EQ(menu().rebuilds, 1);
  EXPECT_THAT(displayLines().at(0), "text label menu.display.levelTitle (Monitor 3, 80)");
}

TEST_F(StatusItemControllerTest, AReleasedSliderFollowsTheLevelAfterFourTenthsOfASecond) {
  addAppleDisplay({5, 1552, 5, 1, false}, 0.3F);
  menu().open();
  menu().drag(1, 60);
  machine.displayServices.levels[5] = 0.2F;
  pass(milliseconds(250));
  EXPECT_EQ(menu().sliderValue(1), 60);
  EXPECT_THAT(displayLines().at(0), "text label menu.display.levelTitle (Apple 5, 20)");
  pass(milliseconds(250));
  EXPECT_EQ(menu().sliderValue(1), 20);
}

TEST_F(StatusItemControllerTest, ADisplayThatBecomesControllableCausesOneRebuildAtTheNextTick) {
  auto& channel = addSilentMonitor(2);
  addAnsweringMonitor(3, 55);
  menu().open();
  const Instant opened = machine.time.now();
  pass(milliseconds(1100));
  channel.answers = true;
  while (!controller.level(2)) pass(milliseconds(1));
  EXPECT_EQ(menu().rebuilds, 1);
  const auto sinceLastTick = (machine.time.now() - opened) % milliseconds(250);
  ASSERT_GT(sinceLastTick, milliseconds(0));
  pass(milliseconds(250) - sinceLastTick);
  EXPECT_EQ(menu().rebuilds, 2);
  pass(milliseconds(5000));
  EXPECT_EQ(menu().rebuilds, 2);
  EXPECT_THAT(displayLines(),
              ElementsAre("text label menu.display.levelTitle (Monitor 2, 50)",
                          "slider -100..200 50 menu.slider.accessibilityLabel (Monitor 2)",
                          "text label menu.display.levelTitle (Monitor 3, 55)",
                          "slider -100..200 55 menu.slider.accessibilityLabel (Monitor 3)"));
}

TEST_F(StatusItemControllerTest, ADisplayThatStopsBeingControllableCausesARebuild) {
  addAppleDisplay({5, 1552, 5, 1, false}, 0.3F);
  menu().open();
  machine.displaySystem.online.clear();
  pass(milliseconds(250));
  EXPECT_EQ(menu().rebuilds, 2);
  EXPECT_THAT(displayLines(), ElementsAre("text tertiary menu.noDisplays"));
}

TEST_F(StatusItemControllerTest, TheCountdownToTheNextTryIsKeptCurrent) {
  addSilentMonitor(2);
  menu().open();
  const std::string trying =
      "text tertiary menu.display.statusTitle (Monitor 2, menu.display.retryingNow)";
  const auto waiting = [](std::int64_t seconds) {
    return "text tertiary menu.display.statusTitle (Monitor 2, menu.display.nextTry (" +
           std::to_string(seconds) + "))";
  };
  std::vector<std::string> seen;
  for (int tick = 0; tick < 40; ++tick) {
    pass(milliseconds(250));
    const auto line = displayLines().front();
    if (seen.empty() || seen.back() != line) seen.push_back(line);
    const auto state = controller.retryStatus(2).displayState();
    EXPECT_EQ(line,
              state == RetryStatus::DisplayState::retryingNow() ? trying : waiting(state.seconds));
  }
  EXPECT_THAT(seen, testing::IsSupersetOf({waiting(4), waiting(3), waiting(2), waiting(1)}));
  EXPECT_EQ(menu().rebuilds, 1);
}

TEST_F(StatusItemControllerTest, TheBuiltInPanelKeepsItsStatus) {
  machine.displaySystem.add({7, 1, 7, 1, true}, "Panel");
  menu().open();
  pass(milliseconds(1000));
  EXPECT_THAT(displayLines(),
              ElementsAre("text tertiary menu.display.statusTitle (Panel, menu.display.builtIn)"));
}

TEST_F(StatusItemControllerTest, AnOpenMenuReadsMonitorsAtMostOnceASecond) {
  auto& channel = addAnsweringMonitor(3, 55);
  const auto before = channel.getCount;
  menu().open();
  pass(milliseconds(249));
  EXPECT_EQ(channel.getCount - before, 0);
  pass(milliseconds(1));
  EXPECT_EQ(channel.getCount - before, 1);
  pass(milliseconds(999));
  EXPECT_EQ(channel.getCount - before, 1);
  pass(milliseconds(1));
  EXPECT_EQ(channel.getCount - before, 2);
  pass(milliseconds(8000));
  EXPECT_EQ(channel.getCount - before, 10);
}

TEST_F(StatusItemControllerTest, ATickThatRebuildsTheMenuReadsNoMonitor) {
  addAppleDisplay({5, 1552, 5, 1, false}, 0.3F);
  auto& channel = addAnsweringMonitor(3, 55);
  const auto before = channel.getCount;
  menu().open();
  std::erase_if(machine.displaySystem.online, [](const auto& display) { return display.id == 5; });
  pass(milliseconds(499));
  EXPECT_EQ(menu().rebuilds, 2);
  EXPECT_EQ(channel.getCount - before, 0);
  pass(milliseconds(1));
  EXPECT_EQ(channel.getCount - before, 1);
}

TEST_F(StatusItemControllerTest, OpeningAgainDoesNotReadMonitorsSooner) {
  auto& channel = addAnsweringMonitor(3, 55);
  const auto before = channel.getCount;
  menu().open();
  pass(milliseconds(250));
  menu().close();
  menu().open();
  pass(milliseconds(750));
  EXPECT_EQ(channel.getCount - before, 1);
  pass(milliseconds(250));
  EXPECT_EQ(channel.getCount - before, 2);
}

TEST_F(StatusItemControllerTest, AMonitorsOwnButtonsAreFollowedWhileTheMenuIsOpen) {
  auto& channel = addAnsweringMonitor(3, 55);
  menu().open();
  channel.current = 10;
  pass(milliseconds(1500));
  EXPECT_THAT(displayLines(),
              ElementsAre("text label menu.display.levelTitle (Monitor 3, 10)",
                          "slider -100..200 10 menu.slider.accessibilityLabel (Monitor 3)"));
}

TEST_F(StatusItemControllerTest, NoTimerRunsWhileTheMenuIsClosed) {
  addAnsweringMonitor(3, 55);
  EXPECT_EQ(machine.time.timerCount(), 0U);
  menu().open();
  EXPECT_EQ(machine.time.timerCount(), 1U);
  menu().close();
  EXPECT_EQ(machine.time.timerCount(), 0U);
  controller.setBrightness(30, 3);
  pass(milliseconds(1000));
  EXPECT_THAT(displayLines().at(0), "text label menu.display.levelTitle (Monitor 3, 55)");
}

// Refresh from elsewhere

TEST_F(StatusItemControllerTest, ARefreshIsALaterTaskThatSetsTheButtonAndUpdatesAnOpenMenu) {
  addAnsweringMonitor(3, 55);
  menu().open();
  controller.setBrightness(30, 3);
  const int configured = item().configurations;
  status->refresh();
  EXPECT_EQ(item().configurations, configured);
  EXPECT_THAT(displayLines(), Contains("text label menu.display.levelTitle (Monitor 3, 55)"));
  machine.time.settle();
  EXPECT_EQ(item().configurations, configured + 1);
  EXPECT_THAT(displayLines(), Contains("text label menu.display.levelTitle (Monitor 3, 30)"));
}

TEST_F(StatusItemControllerTest, ARefreshOfTheSameDisplaysChangesInPlaceAllThatARebuildWould) {
  addSilentMonitor(2);
  addAnsweringMonitor(3, 55);
  set("SystemBrightnessKeysEnabled", false);
  menu().open();
  const auto before = menu().lines();
  pass(milliseconds(1100));
  controller.setBrightness(30, 3);
  set("SystemBrightnessKeysEnabled", true);
  HotkeyBindingStore(machine.settings).setBrightnessUpBinding({96, HotkeyBinding::command});
  machine.userSession.files[FakeSession::launchAgentFile] = 0;
  machine.processRunner.results = {FinishedProcess{0, ""}, FinishedProcess{0, ""}};
  refresh();
  EXPECT_EQ(menu().rebuilds, 1);
  const auto updated = menu().lines();
  menu().open();
  EXPECT_EQ(updated, menu().lines());
  for (const auto* const word : {"levelTitle", "slider", "statusTitle", "summary",
                                 "useSystemBrightnessKeys", "launchAtLogin"}) {
    const auto same = [&](const auto& line) {
      return line.find(word) != std::string::npos && std::ranges::count(updated, line) == 1;
    };
    EXPECT_TRUE(std::ranges::none_of(before, same)) << word;
  }
}

TEST_F(StatusItemControllerTest, ARefreshRebuildsAMenuThatNeedsOtherLines) {
  auto& channel = addSilentMonitor(2);
  addAnsweringMonitor(3, 55);
  addAppleDisplay5();
  auto& online = machine.displaySystem.online;
  const auto silent = online.front();
  online.erase(online.begin());
  menu().open();
  EXPECT_FALSE(rebuildsAtRefresh());
  std::ranges::reverse(online);
  EXPECT_TRUE(rebuildsAtRefresh()) << "another order";
  online.push_back(silent);
  EXPECT_TRUE(rebuildsAtRefresh()) << "one display more";
  channel.answers = true;
  controller.brightness(2);
  EXPECT_TRUE(rebuildsAtRefresh()) << "a slider instead of a status";
  machine.displaySystem.allScreens.front().localizedName = "Renamed";
  EXPECT_TRUE(rebuildsAtRefresh()) << "another label of a slider";
  set("SubZeroDimming", false);
  EXPECT_TRUE(rebuildsAtRefresh()) << "other ends of the sliders";
  online.pop_back();
  EXPECT_TRUE(rebuildsAtRefresh()) << "one display less";
  EXPECT_FALSE(rebuildsAtRefresh());
}

TEST_F(StatusItemControllerTest, ARefreshRenamesInPlaceADisplayWithoutASlider) {
  addSilentMonitor(2);
  addAnsweringMonitor(3, 55);
  menu().open();
  machine.displaySystem.allScreens.front().localizedName = "Renamed";
  EXPECT_FALSE(rebuildsAtRefresh());
  EXPECT_THAT(displayLines().front(), testing::HasSubstr("Renamed"));
}

TEST_F(StatusItemControllerTest, ARefreshLeavesAClosedMenuAlone) {
  menu().open();
  menu().close();
  const int configured = item().configurations;
  status->refresh();
  machine.time.settle();
  EXPECT_EQ(item().configurations, configured + 1);
  EXPECT_EQ(menu().rebuilds, 1);
}

TEST_F(StatusItemControllerTest, LiveUpdatesGoOnAfterARefresh) {
  addAppleDisplay({5, 1552, 5, 1, false}, 0.3F);
  menu().open();
  status->refresh();
  machine.time.settle();
  machine.displayServices.levels[5] = 0.8F;
  pass(milliseconds(250));
  EXPECT_EQ(menu().sliderValue(1), 80);
  EXPECT_EQ(machine.time.timerCount(), 1U);
}

TEST_F(StatusItemControllerTest, NothingHappensAfterDestruction) {
  addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, 70);
  menu().drag(1, 71);
  status->refresh();
  status.reset();
  EXPECT_EQ(frame.statusItem, nullptr);
  EXPECT_EQ(machine.time.timerCount(), 0U);
  pass(milliseconds(1000));
  EXPECT_EQ(controller.level(3), 70);
}

TEST_F(StatusItemControllerTest, TheMenuIsDestroyedBeforeWhatItCalls) {
  addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, 70);
  menu().drag(1, 71);
  std::size_t timersThen = 0;
  const auto noteTimers = [&] { timersThen = machine.time.timerCount(); };
  menu().items.emplace_back(MenuCommand{"last", false, "", [kept = whenDropped(noteTimers)] {}});
  status.reset();
  EXPECT_EQ(timersThen, 2U) << "live updates, and the row's pending write";
  EXPECT_EQ(machine.time.timerCount(), 0U);
}

// Commands

TEST_F(StatusItemControllerTest, ChangingHotkeysOpensTheEditor) {
  int opened = 0;
  menu().open();
  menu().choose("menu.changeHotkeys");
  status->onEditHotkeys = [&] { ++opened; };
  menu().choose("menu.changeHotkeys");
  EXPECT_EQ(opened, 1);
}

TEST_F(StatusItemControllerTest, TogglingTheSystemKeysAsksForTheOppositeOfTheTick) {
  std::vector<bool> asked;
  status->onToggleSystemBrightnessKeys = [&](bool enabled) {
    asked.push_back(enabled);
    set("SystemBrightnessKeysEnabled", enabled);
  };
  menu().open();
  menu().choose("menu.useSystemBrightnessKeys");
  EXPECT_FALSE(isTicked("menu.useSystemBrightnessKeys"));
  menu().choose("menu.useSystemBrightnessKeys");
  EXPECT_TRUE(isTicked("menu.useSystemBrightnessKeys"));
  EXPECT_THAT(asked, ElementsAre(false, true));
}

TEST_F(StatusItemControllerTest, TogglingInvertsTheTickAndNotASettingThatChangedSince) {
  std::vector<bool> asked;
  status->onToggleSystemBrightnessKeys = [&](bool enabled) { asked.push_back(enabled); };
  menu().open();
  set("SystemBrightnessKeysEnabled", false);
  menu().choose("menu.useSystemBrightnessKeys");
  EXPECT_THAT(asked, ElementsAre(false));
}

TEST_F(StatusItemControllerTest, ARelayThatCannotBeInstalledLeavesTheItemUnticked) {
  set("SystemBrightnessKeysEnabled", false);
  status->onToggleSystemBrightnessKeys = [&](bool enabled) {
    EXPECT_TRUE(enabled);
    set("SystemBrightnessKeysEnabled", false);
  };
  menu().open();
  menu().choose("menu.useSystemBrightnessKeys");
  EXPECT_FALSE(isTicked("menu.useSystemBrightnessKeys"));
}

TEST_F(StatusItemControllerTest, RestoringWritesTheSavedLevels) {
  auto& channel = addAnsweringMonitor(3, 55);
  controller.setBrightness(40, 3);
  channel.current = 90;
  menu().open();
  menu().choose("menu.restoreSavedBrightness");
  pass(milliseconds(1000));
  EXPECT_EQ(channel.current, 40);
}

TEST_F(StatusItemControllerTest, UndimmingEndsEverySoftwareEffect) {
  addSilentMonitor(4).answers = true;
  addAnsweringMonitor(3, 55);
  controller.brightness(4);
  controller.setLevel(-40, 3);
  controller.setLevel(150, 4);
  menu().open();
  menu().choose("menu.undimAll");
  EXPECT_EQ(controller.level(3), 0);
  EXPECT_EQ(controller.level(4), 100);
  EXPECT_EQ(machine.gamma.calls.back(), "discard foreign") << "a night light's, too";
}

TEST_F(StatusItemControllerTest, UndimmingEndsADimmingThatIsStillPendingToo) {
  addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, -30);
  menu().drag(1, -40);
  menu().choose("menu.undimAll");
  EXPECT_EQ(controller.level(3), 0);
  pass(milliseconds(200));
  EXPECT_EQ(controller.level(3), 0);
}

TEST_F(StatusItemControllerTest, RetryingForgetsTheBackOff) {
  auto& channel = addSilentMonitor(2);
  menu().open();
  pass(milliseconds(8000));
  menu().close();
  ASSERT_GE(controller.retryStatus(2).attempts, 2);
  ASSERT_GE(controller.retryStatus(2).secondsUntilNextAttempt, 2);
  channel.answers = true;
  pass(milliseconds(100));
  ASSERT_EQ(controller.level(2), std::nullopt);
  menu().choose("menu.retryDisconnected");
  pass(milliseconds(100));
  EXPECT_EQ(controller.level(2), 50);
}

TEST_F(StatusItemControllerTest, TogglingLaunchAtLoginAsksForTheOppositeOfTheLoginItemsState) {
  machine.userSession.files[FakeSession::launchAgentFile] = 0;
  machine.processRunner.results = {FinishedProcess{0, "\"com.quorrel.brivane\" => disabled"}};
  menu().open();
  machine.processRunner.runs.clear();
  menu().choose("menu.launchAtLogin");
  ASSERT_THAT(machine.processRunner.runs, SizeIs(3));
  EXPECT_EQ(machine.processRunner.runs.at(0).at(1), "print-disabled");
  EXPECT_EQ(machine.processRunner.runs.at(1).at(1), "enable");
  EXPECT_EQ(machine.processRunner.runs.at(2).at(1), "bootstrap");
  machine.processRunner.results = {FinishedProcess{0, ""}};
  machine.processRunner.runs.clear();
  menu().choose("menu.launchAtLogin");
  ASSERT_THAT(machine.processRunner.runs, SizeIs(2));
  EXPECT_EQ(machine.processRunner.runs.at(1).at(1), "disable");
}

TEST_F(StatusItemControllerTest, WithoutTheAgentFileTogglingLaunchAtLoginOnlyLogsTheInstallHint) {
  menu().open();
  menu().choose("menu.launchAtLogin");
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: no LaunchAgent installed; run ./install.sh to enable launch at "
                          "login."));
  EXPECT_THAT(machine.processRunner.runs, IsEmpty());
}

TEST_F(StatusItemControllerTest, QuittingTerminatesTheApplication) {
  menu().open();
  EXPECT_EQ(frame.app.exitStatus, std::nullopt);
  menu().choose("menu.quit");
  EXPECT_EQ(frame.app.exitStatus, 0);
}

TEST_F(StatusItemControllerTest, QuittingWritesAPendingValueBeforeTheApplicationCleansUp) {
  addAnsweringMonitor(3, 55);
  menu().open();
  menu().drag(1, -30);
  menu().drag(1, -40);
  struct : ApplicationDelegate {
    void applicationDidFinishLaunching() override {}
    void applicationWasOpenedAgain() override {}
    void applicationWillTerminate() override { levelAtTheEnd = controller->level(3); }
    BrightnessController* controller = nullptr;
    std::optional<Percent> levelAtTheEnd;
  } delegate;
  delegate.controller = &controller;
  frame.app.setDelegate(&delegate);
  menu().choose("menu.quit");
  EXPECT_EQ(delegate.levelAtTheEnd, -40);
}

}  // namespace
}  // namespace brivane
