#include <gtest/gtest.h>

#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

struct RelaySettingsTest : testing::Test {
  FakeUserDefaults defaults;
  RelaySettings settings{defaults};
};

TEST_F(RelaySettingsTest, TheRelayIsOnUnlessSwitchedOff) {
  EXPECT_TRUE(settings.systemBrightnessKeysEnabled());
  defaults.set("SystemBrightnessKeysEnabled", {false});
  EXPECT_FALSE(settings.systemBrightnessKeysEnabled());
  defaults.set("SystemBrightnessKeysEnabled", {true});
  EXPECT_TRUE(settings.systemBrightnessKeysEnabled());
}

TEST_F(RelaySettingsTest, TheKeysAreF19AndF20ByDefault) {
  EXPECT_EQ(settings.relayUpKey().name, "F19");
  EXPECT_EQ(settings.relayDownKey().name, "F20");
}

TEST_F(RelaySettingsTest, AStoredCodeSelectsItsKey) {
  defaults.set("BrightnessKeyRelayUp", {std::int64_t{105}});
  defaults.set("BrightnessKeyRelayDown", {std::int64_t{64}});
  EXPECT_EQ(settings.relayUpKey().name, "F13");
  EXPECT_EQ(settings.relayDownKey().name, "F17");
}

TEST_F(RelaySettingsTest, AnythingButTheCodeOfARelayKeyFallsBack) {
  const std::vector<PropertyValue> values = {{std::int64_t{12}},
                                             {std::string("105")},
                                             {std::int64_t{-1}},
                                             {std::int64_t{105} - (std::int64_t{1} << 32)},
                                             {std::int64_t{105} + (std::int64_t{1} << 32)},
                                             {true},
                                             {105.5},
                                             {PropertyValue::Array{}},
                                             {PropertyValue::Unsupported{}}};
  for (const auto& value : values) {
    defaults.set("BrightnessKeyRelayUp", value);
    defaults.set("BrightnessKeyRelayDown", value);
    EXPECT_EQ(settings.relayUpKey().name, "F19") << value.content.index();
    EXPECT_EQ(settings.relayDownKey().name, "F20") << value.content.index();
  }
}

}  // namespace
}  // namespace brivane
