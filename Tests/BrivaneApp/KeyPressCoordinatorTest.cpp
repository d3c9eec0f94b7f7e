#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneApp/KeyPressCoordinator.h"
#include "BrivaneUI/Strings.h"
#include "Tests/Support/ControllerBench.h"
#include "Tests/Support/FakeFrame.h"
#include "Tests/Support/TimerNotingRuntime.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using Level = HUDModel::Level;
using Connecting = HUDModel::Connecting;

constexpr Adjustment stepUp = {.delta = 5, .snapToStep = true};

struct CountingMenu : MenuRefreshing {
  void refresh() override { ++refreshes; }
  int refreshes = 0;
};

struct KeyPressCoordinatorTest : testing::Test, ControllerBench {
  /// Adds a silent monitor that is known to speak DDC/CI, and moves the pointer there.
  FakeBus::Channel& addConnectingMonitor(DisplayID display) {
    auto& channel = addSilentMonitor(display);
    store.saveSupportsDDC(true, display);
    return channel;
  }

  bool showsConnecting() { return std::holds_alternative<Connecting>(hud.model().state()); }

  /// The number of presents since the last call.
  std::ptrdiff_t presentations() {
    return std::ranges::count_if(machine.notes.take(), [](const std::string& note) {
      return note.find("HUD front") != std::string::npos;
    });
  }

  void run(Microseconds time) { machine.time.runFor(time); }

  FakeFrame frame{machine.time, machine.notes};
  CatalogColor colors{machine.bundles, machine.systemLog};
  StringCatalogue texts{machine.bundles, machine.systemLog, userInterfaceBundle};
  BrightnessHUD hud{machine, frame, colors, texts};
  CountingMenu menu;
  KeyPressCoordinator coordinator{machine.time, controller, hud, menu};
};

TEST_F(KeyPressCoordinatorTest, APressShowsTheNewLevelOnItsDisplayAndIsTaken) {
  addAnsweringMonitor(2, 37);
  EXPECT_TRUE(coordinator.handle(stepUp));
  EXPECT_EQ(hud.model().state(), HUDModel::State(Level{40}));
  EXPECT_TRUE(hud.isVisible());
  EXPECT_TRUE(coordinator.handle({.delta = -3, .snapToStep = false}));
  EXPECT_EQ(hud.model().state(), HUDModel::State(Level{37}));
}

TEST_F(KeyPressCoordinatorTest, TheFirstPressLetsTheFrameExpectAHUDBeforeTheMonitorIsAsked) {
  addAnsweringMonitor(2, 37);
  machine.notes.take();
  coordinator.handle(stepUp);
  coordinator.handle(stepUp);
  const auto notes = machine.notes.take();
  const auto isExpectation = [](const std::string& note) {
    return note.find("HUD expected") != std::string::npos;
  };
  EXPECT_EQ(std::ranges::find_if(notes, isExpectation), notes.begin());
  EXPECT_EQ(std::ranges::count_if(notes, isExpectation), 1);
}

TEST_F(KeyPressCoordinatorTest, TheHUDIsShownOnTheDisplayUnderThePointer) {
  addSilentMonitor(2).answers = true;
  addAnsweringMonitor(3, 60);
  controller.brightness(2);
  ASSERT_TRUE(coordinator.handle(stepUp));
  const double right = frame.hudWindow->ownFrame.x;
  machine.pointAt(2);
  ASSERT_TRUE(coordinator.handle(stepUp));
  EXPECT_EQ(right - frame.hudWindow->ownFrame.x, 100);
}

TEST_F(KeyPressCoordinatorTest, TheLevelIsShownFor1Point2Seconds) {
  addAnsweringMonitor(2, 37);
  coordinator.handle(stepUp);
  run(1200ms - 1us);
  EXPECT_EQ(frame.hudWindow->alpha, 1);
  run(1us);
  EXPECT_EQ(frame.hudWindow->alpha, 0);
}

TEST_F(KeyPressCoordinatorTest, TheMenuIsRefreshedAfterThePressNotDuringIt) {
  addAnsweringMonitor(2, 37);
  coordinator.handle(stepUp);
  EXPECT_EQ(menu.refreshes, 0);
  machine.time.settle();
  EXPECT_EQ(menu.refreshes, 1);
}

TEST_F(KeyPressCoordinatorTest, APressThatNoDisplayTakesIsPassedThroughAndShowsNothing) {
  addSilentMonitor(2);
  EXPECT_FALSE(coordinator.handle(stepUp));
  machine.displaySystem.pointer = {-1, -1};
  EXPECT_FALSE(coordinator.handle(stepUp));
  run(1s);
  EXPECT_EQ(frame.hudWindow, nullptr);
  EXPECT_EQ(menu.refreshes, 0);
}

TEST_F(KeyPressCoordinatorTest, AMonitorThatIsNotAnsweringIsShownAsConnectingAndThePressIsTaken) {
  addConnectingMonitor(2);
  EXPECT_TRUE(coordinator.handle(stepUp));
  EXPECT_EQ(hud.model().state(), (HUDModel::State(Connecting{"Monitor 2", std::nullopt})));
  machine.time.settle();
  EXPECT_EQ(menu.refreshes, 0);
}

TEST_F(KeyPressCoordinatorTest, TheCountdownIsKeptCurrentEveryQuarterOfASecond) {
  addConnectingMonitor(2);
  coordinator.handle(stepUp);
  // The read fails within 0.3 s, and is shown as running for 0.8 s; then comes a second's wait.
  std::vector<std::optional<std::int64_t>> countdown;
  presentations();
  for (int tick = 0; tick < 8; ++tick) {
    run(250ms - 1us);
    EXPECT_EQ(presentations(), 0);
    run(1us);
    EXPECT_EQ(presentations(), 1);
    countdown.push_back(std::get<Connecting>(hud.model().state()).secondsUntilRetry);
  }
  EXPECT_THAT(countdown, testing::Contains(std::optional<std::int64_t>(1)));
  EXPECT_EQ(countdown.front(), std::nullopt);
}

TEST_F(KeyPressCoordinatorTest, WhileADisplayKeepsRetryingTheHUDStaysUp) {
  addConnectingMonitor(2);
  coordinator.handle(stepUp);
  for (int second = 0; second < 60; ++second) {
    run(1s);
    ASSERT_TRUE(hud.isVisible());
    ASSERT_EQ(frame.hudWindow->alpha, 1);
    ASSERT_TRUE(showsConnecting());
  }
}

TEST_F(KeyPressCoordinatorTest, EachPresentationOfTheConnectingHUDLastsFourSeconds) {
  addConnectingMonitor(2);
  coordinator.handle(stepUp);
  run(1s);
  coordinator.stop();
  run(4s - 1us);
  EXPECT_EQ(frame.hudWindow->alpha, 1);
  run(1us);
  EXPECT_EQ(frame.hudWindow->alpha, 0);
}

TEST_F(KeyPressCoordinatorTest, TheFirstPresentationLastsFourSecondsToo) {
  addConnectingMonitor(2);
  coordinator.handle(stepUp);
  coordinator.stop();
  run(4s - 1us);
  EXPECT_EQ(frame.hudWindow->alpha, 1);
  run(1us);
  EXPECT_EQ(frame.hudWindow->alpha, 0);
}

TEST_F(KeyPressCoordinatorTest, WhenTheMonitorAnswersTheHUDIsDismissedAtTheNextTick) {
  auto& channel = addConnectingMonitor(2);
  coordinator.handle(stepUp);
  run(10s);
  channel.answers = true;
  controller.retryNow();
  while (controller.retryStatus(2).isRetrying) {
    EXPECT_TRUE(hud.isVisible());
    run(1ms);
  }
  const auto sinceTick = machine.time.now().time_since_epoch() % 250ms;
  run(250ms - sinceTick - 1us);
  EXPECT_TRUE(hud.isVisible());
  run(1us);
  EXPECT_FALSE(hud.isVisible());
}

TEST_F(KeyPressCoordinatorTest, WhenTheMonitorIsUnpluggedTheHUDIsDismissedAtTheNextTick) {
  addConnectingMonitor(2);
  addAnsweringMonitor(3, 50);
  machine.pointAt(2);
  coordinator.handle(stepUp);
  run(10100ms);
  std::erase_if(machine.displaySystem.online, [](const auto& display) { return display.id == 2; });
  presentations();
  run(150ms - 1us);
  EXPECT_TRUE(hud.isVisible());
  run(1us);
  EXPECT_FALSE(hud.isVisible());
  run(10s);
  EXPECT_EQ(presentations(), 0);
}

TEST_F(KeyPressCoordinatorTest, APressThatIsHandledStopsTheTickerBeforeTheLevelIsShown) {
  addConnectingMonitor(2);
  addAnsweringMonitor(3, 50);
  TimerNotingRuntime noting(machine.time, machine.notes);
  KeyPressCoordinator noted(noting, controller, hud, menu);
  machine.pointAt(2);
  noted.handle(stepUp);
  run(100ms);
  machine.pointAt(3);
  machine.notes.take();
  noted.handle(stepUp);
  auto notes = machine.notes.take();
  std::erase_if(notes, [](const std::string& note) {
    return !note.ends_with("no more every 250 ms") && !note.ends_with("HUD front");
  });
  EXPECT_THAT(notes, testing::ElementsAre(testing::HasSubstr("no more every 250 ms"),
                                          testing::HasSubstr("HUD front")));
  EXPECT_EQ(hud.model().state(), HUDModel::State(Level{55}));
}

TEST_F(KeyPressCoordinatorTest, ASecondPressOnAConnectingMonitorRestartsTheTicker) {
  addConnectingMonitor(2);
  coordinator.handle(stepUp);
  run(100ms);
  coordinator.handle(stepUp);
  presentations();
  run(250ms - 1us);
  EXPECT_EQ(presentations(), 0);
  run(1us);
  EXPECT_EQ(presentations(), 1);
}

TEST_F(KeyPressCoordinatorTest, TheTickerEndsWhenOtherCodeHidesTheHUD) {
  addConnectingMonitor(2);
  coordinator.handle(stepUp);
  run(100ms);
  hud.dismiss();
  run(1s);
  EXPECT_FALSE(hud.isVisible());
  hud.present(Connecting{"Monitor 2", 77}, 2, 10);
  run(1s);
  EXPECT_EQ(hud.model().state(), (HUDModel::State(Connecting{"Monitor 2", 77})));
}

TEST_F(KeyPressCoordinatorTest, TheTickerEndsWhenTheHUDShowsALevelAgain) {
  addConnectingMonitor(2);
  coordinator.handle(stepUp);
  run(100ms);
  hud.present(Level{10}, 2, 10);
  run(1s);
  EXPECT_EQ(hud.model().state(), HUDModel::State(Level{10}));
  hud.present(Connecting{"Monitor 2", 77}, 2, 10);
  run(1s);
  EXPECT_EQ(hud.model().state(), (HUDModel::State(Connecting{"Monitor 2", 77})));
}

TEST_F(KeyPressCoordinatorTest, NothingHappensAfterDestruction) {
  addAnsweringMonitor(2, 37);
  addConnectingMonitor(3);
  auto other = std::make_unique<KeyPressCoordinator>(machine.time, controller, hud, menu);
  machine.pointAt(2);
  other->handle(stepUp);
  machine.pointAt(3);
  other->handle(stepUp);
  const auto before = machine.time.timerCount();
  other.reset();
  EXPECT_EQ(machine.time.timerCount(), before - 1);
  run(1s);
  EXPECT_EQ(menu.refreshes, 0);
}

}  // namespace
}  // namespace brivane
