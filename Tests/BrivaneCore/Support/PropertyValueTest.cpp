#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {
namespace {

PropertyValue integer(std::int64_t value) {
  return {value};
}
PropertyValue text(const char* value) {
  return {std::string(value)};
}

TEST(PropertyValueAsInteger, NumbersAreCutOffAndBooleansAreZeroOrOne) {
  EXPECT_EQ(integer(-5).asInteger(), -5);
  EXPECT_EQ(PropertyValue{40.9}.asInteger(), 40);
  EXPECT_EQ(PropertyValue{-40.9}.asInteger(), -40);
  EXPECT_EQ(PropertyValue{1e30}.asInteger(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(PropertyValue{-1e30}.asInteger(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(PropertyValue{std::numeric_limits<double>::quiet_NaN()}.asInteger(), 0);
  EXPECT_EQ(PropertyValue{true}.asInteger(), 1);
  EXPECT_EQ(PropertyValue{false}.asInteger(), 0);
}

TEST(PropertyValueAsInteger, TextGivesTheIntegerItBeginsWith) {
  EXPECT_EQ(text("40").asInteger(), 40);
  EXPECT_EQ(text(" +40 percent").asInteger(), 40);
  EXPECT_EQ(text("-3").asInteger(), -3);
  EXPECT_EQ(text("bright").asInteger(), 0);
  EXPECT_EQ(text("").asInteger(), 0);
  EXPECT_EQ(text("99999999999999999999").asInteger(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(text("-99999999999999999999").asInteger(), std::numeric_limits<std::int64_t>::min());
}

TEST(PropertyValueAsInteger, OtherKindsAreZero) {
  EXPECT_EQ(PropertyValue{PropertyValue::Array{}}.asInteger(), 0);
  EXPECT_EQ(PropertyValue{PropertyValue::Dictionary{}}.asInteger(), 0);
  EXPECT_EQ(PropertyValue{}.asInteger(), 0);
  EXPECT_EQ(PropertyValue{PropertyValue::Date{40}}.asInteger(), 0);
  EXPECT_EQ(PropertyValue{PropertyValue::Data{{0x34}}}.asInteger(), 0);
}

TEST(PropertyValueAsBoolean, NumbersOtherThanZeroAreTrue) {
  EXPECT_TRUE(integer(2).asBoolean());
  EXPECT_FALSE(integer(0).asBoolean());
  EXPECT_TRUE(PropertyValue{0.5}.asBoolean());
  EXPECT_FALSE(PropertyValue{0.0}.asBoolean());
  EXPECT_TRUE(PropertyValue{true}.asBoolean());
}

TEST(PropertyValueAsBoolean, TextThatSaysYesIsTrue) {
  for (const auto* yes : {"YES", "yes", "true", "T", "1", " 7"}) EXPECT_TRUE(text(yes).asBoolean());
  for (const auto* no : {"NO", "false", "0", "", "on"}) EXPECT_FALSE(text(no).asBoolean());
  EXPECT_FALSE(PropertyValue{PropertyValue::Array{}}.asBoolean());
  EXPECT_FALSE(PropertyValue{PropertyValue::Date{1}}.asBoolean());
  EXPECT_FALSE(PropertyValue{PropertyValue::Data{{1}}}.asBoolean());
}

TEST(PropertyValueNumber32, OnlyNumbersAreNumbers) {
  EXPECT_EQ(integer(4268).number32(), 4268u);
  EXPECT_EQ(integer(-1).number32(), 0xFFFFFFFFu);
  EXPECT_EQ(PropertyValue{7.9}.number32(), 7u);
  EXPECT_EQ(text("7").number32(), std::nullopt);
  EXPECT_EQ(PropertyValue{true}.number32(), std::nullopt);
  EXPECT_EQ(PropertyValue{PropertyValue::Date{7}}.number32(), std::nullopt);
  EXPECT_EQ(PropertyValue{PropertyValue::Data{{7}}}.number32(), std::nullopt);
}

TEST(PropertyValueExactInteger, IsTheNumberWhereItIsWhole) {
  EXPECT_EQ(integer(-7).exactInteger(), -7);
  EXPECT_EQ(PropertyValue{3.0}.exactInteger(), 3);
  EXPECT_EQ(PropertyValue{-0.0}.exactInteger(), 0);
  EXPECT_EQ(PropertyValue{-9223372036854775808.0}.exactInteger(), std::int64_t{-1} << 63);
  EXPECT_EQ(PropertyValue{true}.exactInteger(), 1);
  EXPECT_EQ(PropertyValue{false}.exactInteger(), 0);
}

TEST(PropertyValueExactInteger, EverythingElseIsNone) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::vector<PropertyValue> others = {
      {3.5},     {9223372036854775808.0},  {infinity}, {-infinity}, {std::nan("")},
      text("3"), {PropertyValue::Array{}}, {}};
  for (const auto& other : others) EXPECT_EQ(other.exactInteger(), std::nullopt);
}

}  // namespace
}  // namespace brivane
