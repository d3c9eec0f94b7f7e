#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

struct HotkeyBindingStoreTest : testing::Test {
  FakeUserDefaults defaults;
  FakeKeyboard keyboard;
  HotkeyBindingStore store{defaults};
};

TEST_F(HotkeyBindingStoreTest, TheFactoryBindingsAreControlOptionUpAndDown) {
  EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{126, 6144}));
  EXPECT_EQ(store.brightnessDownBinding(), (HotkeyBinding{125, 6144}));
  EXPECT_EQ(store.brightnessUpBinding().displayName(keyboard), "⌃⌥↑");
  EXPECT_EQ(store.brightnessDownBinding().displayName(keyboard), "⌃⌥↓");
  EXPECT_EQ(store.brightnessUpBinding().describedKeys(), "ctrl+opt+key126");
  EXPECT_EQ(store.brightnessDownBinding().describedKeys(), "ctrl+opt+key125");
}

TEST_F(HotkeyBindingStoreTest, EachHalfOfABindingHasADefaultOfItsOwn) {
  defaults.set("BrightnessUpModifiers", {std::int64_t{256}});
  EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{126, 256}));
  EXPECT_EQ(store.brightnessUpBinding().displayName(keyboard), "⌘↑");
  defaults.set("BrightnessDownKeyCode", {std::int64_t{7}});
  EXPECT_EQ(store.brightnessDownBinding(), (HotkeyBinding{7, 6144}));
}

TEST_F(HotkeyBindingStoreTest, ABindingIsStoredAsTwoIntegersUnderItsKeys) {
  store.setBrightnessUpBinding({0, 4294967295});
  store.setBrightnessDownBinding({4294967295, 0});
  const PropertyValue::Dictionary expected = {{"BrightnessUpKeyCode", {std::int64_t{0}}},
                                              {"BrightnessUpModifiers", {std::int64_t{4294967295}}},
                                              {"BrightnessDownKeyCode", {std::int64_t{4294967295}}},
                                              {"BrightnessDownModifiers", {std::int64_t{0}}}};
  EXPECT_EQ(defaults.values, expected);
  EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{0, 4294967295}));
  EXPECT_EQ(store.brightnessDownBinding(), (HotkeyBinding{4294967295, 0}));
}

TEST_F(HotkeyBindingStoreTest, AStoredValueThatIsNoIntegerCountsAsAbsent) {
  const std::vector<PropertyValue> values = {{std::string("7")},
                                             {std::string("up")},
                                             {PropertyValue::Unsupported{}},
                                             {PropertyValue::Array{}},
                                             {PropertyValue::Dictionary{}},
                                             {3.5},
                                             {1e300}};
  for (const auto& value : values) {
    for (const auto* key : {"BrightnessUpKeyCode", "BrightnessUpModifiers", "BrightnessDownKeyCode",
                            "BrightnessDownModifiers"}) {
      defaults.set(key, value);
    }
    EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{126, 6144})) << value.content.index();
    EXPECT_EQ(store.brightnessDownBinding(), (HotkeyBinding{125, 6144})) << value.content.index();
  }
}

TEST_F(HotkeyBindingStoreTest, BooleansAndWholeFractionsAreIntegersAsThePlatformConvertsThem) {
  defaults.set("BrightnessUpKeyCode", {3.0});
  defaults.set("BrightnessUpModifiers", {true});
  EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{3, 1}));
  defaults.set("BrightnessUpModifiers", {false});
  EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{3, 0}));
}

TEST_F(HotkeyBindingStoreTest, AStoredIntegerOutsideItsRangeAbortsAndNamesTheKey) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (const auto* key : {"BrightnessUpKeyCode", "BrightnessUpModifiers"}) {
    defaults.values = {{key, {std::int64_t{-1}}}};
    EXPECT_DEATH(store.brightnessUpBinding(), key + std::string(" holds -1"));
  }
  for (const auto* key : {"BrightnessDownKeyCode", "BrightnessDownModifiers"}) {
    defaults.values = {{key, {std::int64_t{4294967296}}}};
    EXPECT_DEATH(store.brightnessDownBinding(), key + std::string(" holds 4294967296"));
  }
  defaults.values = {{"BrightnessDownKeyCode", {4294967296.0}}};
  EXPECT_DEATH(store.brightnessDownBinding(), "BrightnessDownKeyCode");
}

TEST_F(HotkeyBindingStoreTest, ResettingRemovesTheFourKeysAndLeavesTheSwitch) {
  store.setBrightnessUpBinding({1, 2});
  store.setBrightnessDownBinding({3, 4});
  defaults.set("CustomHotkeysEnabled", {false});
  store.resetBindings();
  EXPECT_EQ(defaults.values, (PropertyValue::Dictionary{{"CustomHotkeysEnabled", {false}}}));
  EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{126, 6144}));
  EXPECT_EQ(store.brightnessDownBinding(), (HotkeyBinding{125, 6144}));
  EXPECT_FALSE(store.customHotkeysEnabled());
}

TEST_F(HotkeyBindingStoreTest, OnlyAnExplicitNoTurnsTheBindingsOff) {
  EXPECT_TRUE(store.customHotkeysEnabled());
  defaults.set("CustomHotkeysEnabled", {true});
  EXPECT_TRUE(store.customHotkeysEnabled());
  for (const PropertyValue& no :
       {PropertyValue{false}, PropertyValue{std::int64_t{0}}, PropertyValue{std::string("NO")}}) {
    defaults.set("CustomHotkeysEnabled", no);
    EXPECT_FALSE(store.customHotkeysEnabled());
  }
  EXPECT_EQ(store.brightnessUpBinding(), (HotkeyBinding{126, 6144}));
  EXPECT_EQ(store.brightnessDownBinding(), (HotkeyBinding{125, 6144}));
}

}  // namespace
}  // namespace brivane
