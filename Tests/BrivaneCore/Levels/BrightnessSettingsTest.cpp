#include <gtest/gtest.h>

#include "BrivaneCore/Levels/BrightnessSettings.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

struct BrightnessSettingsTest : testing::Test {
  FakeUserDefaults defaults;
  BrightnessSettings settings{defaults};
};

TEST_F(BrightnessSettingsTest, BothSoftwareEndsAreOnByDefault) {
  EXPECT_TRUE(settings.subZeroDimmingEnabled());
  EXPECT_TRUE(settings.softwareBrighteningEnabled());
}

TEST_F(BrightnessSettingsTest, AStoredSwitchIsReadAtEachUse) {
  defaults.set("SubZeroDimming", {false});
  EXPECT_FALSE(settings.subZeroDimmingEnabled());
  defaults.set("SubZeroDimming", {true});
  EXPECT_TRUE(settings.subZeroDimmingEnabled());
}

TEST_F(BrightnessSettingsTest, TheNewerBrighteningKeyWinsWhateverItsValue) {
  struct Case {
    std::optional<bool> newer;
    std::optional<bool> older;
    bool isEnabled;
  };
  const std::optional<bool> absent;
  const std::vector<Case> cases = {
      {true, false, true},    {true, absent, true}, {false, true, false},  {false, absent, false},
      {absent, false, false}, {absent, true, true}, {absent, absent, true}};
  for (const auto& [newer, older, isEnabled] : cases) {
    defaults.values.clear();
    if (newer) defaults.set("BrightenPastMaximum", {*newer});
    if (older) defaults.set("SoftwareBrightening", {*older});
    EXPECT_EQ(settings.softwareBrighteningEnabled(), isEnabled);
  }
}

TEST_F(BrightnessSettingsTest, APresentValueIsConvertedToABoolean) {
  defaults.set("BrightenPastMaximum", {std::string("nonsense")});
  defaults.set("SoftwareBrightening", {true});
  EXPECT_FALSE(settings.softwareBrighteningEnabled());
  defaults.set("BrightenPastMaximum", {std::int64_t{1}});
  EXPECT_TRUE(settings.softwareBrighteningEnabled());
}

TEST_F(BrightnessSettingsTest, TheLevelsOnOfferFollowTheSwitches) {
  EXPECT_EQ(settings.levelRange(), (PercentRange{-100, 200}));
  defaults.set("SubZeroDimming", {false});
  EXPECT_EQ(settings.levelRange(), (PercentRange{0, 200}));
  defaults.set("BrightenPastMaximum", {false});
  EXPECT_EQ(settings.levelRange(), (PercentRange{0, 100}));
  defaults.remove("SubZeroDimming");
  EXPECT_EQ(settings.levelRange(), (PercentRange{-100, 100}));
}

}  // namespace
}  // namespace brivane
