// What a screen reader says of the HUD, and when.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneApp/BrightnessHUD.h"
#include "BrivaneUI/Strings.h"
#include "Tests/Support/BuiltResources.h"
#include "Tests/Support/FakeFrame.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr DisplayID halden = 1;
constexpr DisplayID norvik = 2;

struct HUDAnnouncerTest : testing::Test {
  HUDAnnouncerTest() {
    machine.displaySystem.allScreens = {{halden, {0, 0, 1920, 1080}, "Halden", 1.0},
                                        {norvik, {1920, 0, 1920, 1080}, "Norvik", 1.0}};
  }

  void show(std::int64_t percent, DisplayID display = halden) {
    hud->present(HUDModel::Level{percent}, display, 1.2);
  }
  void showConnecting(std::optional<std::int64_t> seconds) {
    hud->present(HUDModel::Connecting{"Halden", seconds}, halden, 4.0);
  }
  std::vector<std::string> heardAfter(int duration) {
    machine.time.runFor(milliseconds(duration));
    return std::exchange(frame.announcements, {});
  }
  void speak(const std::string& language) {
    BuiltResources resources(language);
    strings = StringCatalogue(resources, machine.log(), userInterfaceBundle);
  }

  FakeMachine machine;
  FakeFrame frame{machine.time, machine.notes};
  CatalogColor colors{machine.resources(), machine.log()};
  BuiltResources english{"en"};
  StringCatalogue strings{english, machine.log(), userInterfaceBundle};
  std::unique_ptr<BrightnessHUD> hud =
      std::make_unique<BrightnessHUD>(machine, frame, colors, strings);
};

TEST_F(HUDAnnouncerTest, ALevelIsSaidOnceHalfASecondAfterItWasShown) {
  show(40);
  EXPECT_THAT(heardAfter(499), IsEmpty());
  EXPECT_THAT(heardAfter(1), ElementsAre("Halden, 40%"));
  EXPECT_THAT(heardAfter(60'000), IsEmpty());
}

TEST_F(HUDAnnouncerTest, OfARunOfChangesTheLastIsSaid) {
  for (int percent = 40; percent <= 100; percent += 5) {
    show(percent);
    EXPECT_THAT(heardAfter(60), IsEmpty());
  }
  EXPECT_THAT(heardAfter(439), IsEmpty());
  EXPECT_THAT(heardAfter(1), ElementsAre("Halden, 100%"));
}

TEST_F(HUDAnnouncerTest, AKeyHeldAtTheEndOfTheScaleDelaysNothingAndRepeatsNothing) {
  std::vector<std::string> heard;
  for (int step = 0; step < 50; ++step) {
    show(200);
    for (auto& text : heardAfter(60)) heard.push_back(std::to_string(step) + ": " + text);
  }
  EXPECT_THAT(heard, ElementsAre("8: Halden, 200%"));
}

TEST_F(HUDAnnouncerTest, TheSameLevelIsSaidAgainWhenTheHUDAppearsAgain) {
  show(200);
  EXPECT_THAT(heardAfter(2000), ElementsAre("Halden, 200%"));
  show(200);
  EXPECT_THAT(heardAfter(2000), ElementsAre("Halden, 200%"));
}

TEST_F(HUDAnnouncerTest, AnotherDisplaysEqualLevelIsSaid) {
  show(40, halden);
  EXPECT_THAT(heardAfter(600), ElementsAre("Halden, 40%"));
  show(40, norvik);
  EXPECT_THAT(heardAfter(600), ElementsAre("Norvik, 40%"));
}

TEST_F(HUDAnnouncerTest, AHUDThatIsHiddenBeforeSaysNothing) {
  show(40);
  EXPECT_THAT(heardAfter(400), IsEmpty());
  hud->dismiss();
  EXPECT_THAT(heardAfter(2000), IsEmpty());
}

TEST_F(HUDAnnouncerTest, ALevelThatACardReplacesIsNotSaid) {
  show(40);
  EXPECT_THAT(heardAfter(400), IsEmpty());
  showConnecting(3);
  EXPECT_THAT(heardAfter(600), ElementsAre("Connecting to Halden…"));
}

TEST_F(HUDAnnouncerTest, ACountdownIsNotReadAloud) {
  for (const std::int64_t seconds : {3, 2, 1}) {
    for (int quarter = 0; quarter < 4; ++quarter) {
      showConnecting(seconds);
      machine.time.runFor(milliseconds(250));
    }
  }
  showConnecting(std::nullopt);
  EXPECT_THAT(heardAfter(1000), ElementsAre("Connecting to Halden…"));
}

TEST_F(HUDAnnouncerTest, ALevelBelowZeroHasItsSign) {
  show(-60);
  EXPECT_THAT(heardAfter(600), ElementsAre("Halden, -60%"));
}

TEST_F(HUDAnnouncerTest, TheLevelOfADisplayThatHasGoneIsNotSaid) {
  show(40, norvik);
  machine.displaySystem.allScreens.pop_back();
  EXPECT_THAT(heardAfter(1000), IsEmpty());
}

TEST_F(HUDAnnouncerTest, AHUDThatIsDroppedSaysNothing) {
  show(40);
  hud.reset();
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(HUDAnnouncerTest, ItSpeaksTheUsersLanguage) {
  for (const auto& [language, level, connecting] : std::vector<std::array<std::string, 3>>{
           {"de", "Halden, 40\u00a0%", "Halden wird verbunden …"},
           {"fr", "Halden, 40\u00a0%", "Connexion à Halden…"},
           {"es", "Halden, 40\u00a0%", "Conectando con Halden…"},
           {"ja", "Halden、40%", "Haldenに接続中…"},
           {"zh-Hans", "Halden，40%", "正在连接 Halden…"}}) {
    speak(language);
    show(40);
    EXPECT_THAT(heardAfter(600), ElementsAre(level));
    showConnecting(3);
    EXPECT_THAT(heardAfter(600), ElementsAre(connecting));
    hud->dismiss();
  }
}

}  // namespace
}  // namespace brivane
