#include <gtest/gtest.h>

#include <limits>

#include "BrivaneCore/Levels/BrightnessStore.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

constexpr DisplayID left = 3;
constexpr DisplayID right = 5;

struct BrightnessStoreTest : testing::Test {
  BrightnessStoreTest() { machine.displaySystem.add({left, 4268, 41156, 0, false}, "Left"); }

  std::optional<PropertyValue> stored(const std::string& key) const {
    return machine.settings.object(key);
  }

  FakeMachine machine;
  BrightnessStore store{machine.settings, machine.displaySystem};
};

TEST_F(BrightnessStoreTest, KeysAreMadeOfVendorModelAndSerialInDecimal) {
  store.save(40, left);
  store.saveSupportsDDC(true, left);
  store.saveNativeMax(255, left);
  const PropertyValue::Dictionary expected{{"brightness.4268.41156.0", {std::int64_t{40}}},
                                           {"ddc.4268.41156.0", {true}},
                                           {"ddcmax.4268.41156.0", {std::int64_t{255}}}};
  EXPECT_EQ(machine.settings.values, expected);
}

TEST_F(BrightnessStoreTest, KeysHoldNumbersOfAllThirtyTwoBits) {
  constexpr auto largest = std::numeric_limits<std::uint32_t>::max();
  machine.displaySystem.add({right, largest, largest, largest, false}, "Right");
  store.save(1, right);
  EXPECT_TRUE(stored("brightness.4294967295.4294967295.4294967295"));
}

TEST_F(BrightnessStoreTest, IdenticalMonitorsShareTheirKeys) {
  machine.displaySystem.add({right, 4268, 41156, 0, false}, "Right");
  store.save(40, left);
  EXPECT_EQ(store.load(right), 40);
}

TEST_F(BrightnessStoreTest, MonitorsWithDifferentSerialNumbersKeepTheirOwnLevels) {
  machine.displaySystem.add({right, 4268, 41156, 9, false}, "Right");
  store.save(40, left);
  EXPECT_EQ(store.load(right), std::nullopt);
}

TEST_F(BrightnessStoreTest, PanelsThatReportNothingShareOneSetOfKeys) {
  store.save(12, 77);
  EXPECT_TRUE(stored("brightness.0.0.0"));
  EXPECT_EQ(store.load(78), 12);
}

TEST_F(BrightnessStoreTest, ALevelIsStoredAsItIsAndLimitedWhenLoaded) {
  store.save(140, left);
  EXPECT_EQ(stored("brightness.4268.41156.0"), PropertyValue{std::int64_t{140}});
  EXPECT_EQ(store.load(left), 100);
  store.save(-5, left);
  EXPECT_EQ(store.load(left), 0);
  store.save(61, left);
  EXPECT_EQ(store.load(left), 61);
}

TEST_F(BrightnessStoreTest, NothingIsLoadedForAPanelThatWasNeverSaved) {
  EXPECT_EQ(store.load(left), std::nullopt);
  EXPECT_EQ(store.nativeMax(left), std::nullopt);
  EXPECT_EQ(store.supportsDDC(left), std::nullopt);
}

TEST_F(BrightnessStoreTest, AMaximumBelowOneLeavesTheEarlierOneInPlace) {
  store.saveNativeMax(80, left);
  store.saveNativeMax(0, left);
  EXPECT_EQ(store.nativeMax(left), 80);
  store.saveNativeMax(-7, left);
  EXPECT_EQ(store.nativeMax(left), 80);
  store.saveNativeMax(1, left);
  EXPECT_EQ(store.nativeMax(left), 1);
}

TEST_F(BrightnessStoreTest, AMaximumBelowOneIsNotStoredAtAll) {
  store.saveNativeMax(0, left);
  EXPECT_TRUE(machine.settings.values.empty());
}

TEST_F(BrightnessStoreTest, AStoredMaximumBelowOneReadsAsNothing) {
  machine.settings.set("ddcmax.4268.41156.0", {std::int64_t{0}});
  EXPECT_EQ(store.nativeMax(left), std::nullopt);
  machine.settings.set("ddcmax.4268.41156.0", {std::int64_t{-1}});
  EXPECT_EQ(store.nativeMax(left), std::nullopt);
}

TEST_F(BrightnessStoreTest, AStoredNoIsDeletedWhenItIsRead) {
  store.saveSupportsDDC(false, left);
  EXPECT_EQ(stored("ddc.4268.41156.0"), PropertyValue{false});
  EXPECT_EQ(store.supportsDDC(left), std::nullopt);
  EXPECT_EQ(stored("ddc.4268.41156.0"), std::nullopt);
  EXPECT_EQ(store.supportsDDC(left), std::nullopt);
}

TEST_F(BrightnessStoreTest, AStoredYesStays) {
  store.saveSupportsDDC(true, left);
  EXPECT_EQ(store.supportsDDC(left), true);
  EXPECT_EQ(store.supportsDDC(left), true);
}

TEST_F(BrightnessStoreTest, ValuesOfAWrongKindAreConvertedAsSettingsAre) {
  const PropertyValue word{std::string("bright")};
  machine.settings.set("brightness.4268.41156.0", word);
  machine.settings.set("ddcmax.4268.41156.0", word);
  EXPECT_EQ(store.load(left), 0);
  EXPECT_EQ(store.nativeMax(left), std::nullopt);
  machine.settings.set("brightness.4268.41156.0", {63.9});
  machine.settings.set("ddcmax.4268.41156.0", {std::string("255")});
  machine.settings.set("ddc.4268.41156.0", {std::int64_t{1}});
  EXPECT_EQ(store.load(left), 63);
  EXPECT_EQ(store.nativeMax(left), 255);
  EXPECT_EQ(store.supportsDDC(left), true);
}

}  // namespace
}  // namespace brivane
