#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneApp/LegacyDefaultsMigration.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr auto domain = "com.quorrel.tallowin";
const PropertyValue yes{true};

struct LegacyDefaultsMigrationTest : testing::Test {
  std::vector<std::string> migrateFrom(std::optional<PropertyValue::Dictionary> values) {
    FakeDefaultsSuite suite(std::move(values));
    return LegacyDefaultsMigration::run(defaults, &suite, domain);
  }

  FakeUserDefaults defaults;
};

TEST_F(LegacyDefaultsMigrationTest, EverySettingIsCopiedWhateverItsMeaning) {
  const PropertyValue::Dictionary legacy = {
      {"SubZeroDimming", {false}},
      {"brightness.1.2.3", {std::int64_t{40}}},
      {"NSWindow Frame main", {std::string("0 0 100 100")}},
      {"LastCheck", {PropertyValue::Date{776995200.5}}},
      {"Bookmark", {PropertyValue::Data{{0x00, 0xFF}}}},
      {"Ratio", {0.5}},
      {"Names", {PropertyValue::Array{{std::string("a")}, {std::int64_t{1}}}}},
      {"Windows", {PropertyValue::Dictionary{{"$date", {1.0}}}}}};
  EXPECT_THAT(migrateFrom(legacy),
              UnorderedElementsAre("SubZeroDimming", "brightness.1.2.3", "NSWindow Frame main",
                                   "LastCheck", "Bookmark", "Ratio", "Names", "Windows"));
  auto expected = legacy;
  expected["MigratedFromTallowin"] = yes;
  EXPECT_EQ(defaults.values, expected);
}

TEST_F(LegacyDefaultsMigrationTest, ASettingInBothDomainsKeepsItsNewValue) {
  defaults.values = {{"SubZeroDimming", {true}}};
  EXPECT_THAT(migrateFrom({{{"SubZeroDimming", {false}}, {"VerboseKeyLog", {true}}}}),
              ElementsAre("VerboseKeyLog"));
  EXPECT_EQ(defaults.values.at("SubZeroDimming"), PropertyValue{true});
}

TEST_F(LegacyDefaultsMigrationTest, ASecondLaunchCopiesNothingEvenIfTheOldSettingsChanged) {
  migrateFrom({{{"SubZeroDimming", {false}}}});
  EXPECT_THAT(migrateFrom({{{"SubZeroDimming", {true}}, {"New", {true}}}}), IsEmpty());
  EXPECT_THAT(defaults.values, UnorderedElementsAre(Pair("SubZeroDimming", PropertyValue{false}),
                                                    Pair("MigratedFromTallowin", yes)));
}

TEST_F(LegacyDefaultsMigrationTest, AnyValueOfTheFlagPreventsTheMigrationAndStays) {
  for (const PropertyValue& flag : {PropertyValue{false}, PropertyValue{std::string("no")},
                                    PropertyValue{std::int64_t{0}}, PropertyValue{}}) {
    defaults.values = {{"MigratedFromTallowin", flag}};
    EXPECT_THAT(migrateFrom({{{"SubZeroDimming", {false}}}}), IsEmpty());
    EXPECT_THAT(defaults.values, ElementsAre(Pair("MigratedFromTallowin", flag)));
  }
}

TEST_F(LegacyDefaultsMigrationTest, WithoutOldSettingsOnlyTheFlagIsSet) {
  EXPECT_THAT(LegacyDefaultsMigration::run(defaults, nullptr, domain), IsEmpty());
  EXPECT_THAT(defaults.values, ElementsAre(Pair("MigratedFromTallowin", yes)));
  defaults.values.clear();
  EXPECT_THAT(migrateFrom(std::nullopt), IsEmpty());
  EXPECT_THAT(defaults.values, ElementsAre(Pair("MigratedFromTallowin", yes)));
  EXPECT_THAT(migrateFrom({{{"SubZeroDimming", {false}}}}), IsEmpty());
}

TEST_F(LegacyDefaultsMigrationTest, AnEmptyDomainSetsTheFlagToo) {
  EXPECT_THAT(migrateFrom(PropertyValue::Dictionary{}), IsEmpty());
  EXPECT_THAT(defaults.values, ElementsAre(Pair("MigratedFromTallowin", yes)));
}

TEST_F(LegacyDefaultsMigrationTest, OnlyTheDomainOfTheGivenNameIsRead) {
  struct NamedSuite : DefaultsSuite {
    std::optional<PropertyValue::Dictionary> persistentDomain(std::string_view name) override {
      return PropertyValue::Dictionary{{"name", {std::string(name)}}};
    }
  } suite;
  LegacyDefaultsMigration::run(defaults, &suite, "com.example.other");
  EXPECT_EQ(defaults.values.at("name"), (PropertyValue{std::string("com.example.other")}));
}

}  // namespace
}  // namespace brivane
