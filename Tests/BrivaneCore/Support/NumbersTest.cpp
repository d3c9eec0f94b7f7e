#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

TEST(ShortestDecimal, ANumberIsWrittenAsShortAsItReadsBack) {
  EXPECT_EQ(shortestDecimal(0), "0");
  EXPECT_EQ(shortestDecimal(1920), "1920");
  EXPECT_EQ(shortestDecimal(-540.5), "-540.5");
  EXPECT_EQ(shortestDecimal(0.1), "0.1");
}

TEST(ShortestDecimal, ThereIsNeverAnExponent) {
  EXPECT_EQ(shortestDecimal(1e6), "1000000");
  EXPECT_EQ(shortestDecimal(1e-7), "0.0000001");
  EXPECT_EQ(shortestDecimal(std::numeric_limits<double>::max()).size(), 309u);
}

TEST(ShortestDecimal, BelowAPowerOfTwoWhereDoublesLieCloserItIsStillTheShortest) {
  // The nearest decimal of 16 digits is 5.684341886080801e-14, the double below.
  EXPECT_EQ(shortestFloatingPoint(std::ldexp(1, -44)), "5.684341886080802e-14");
}

TEST(ShortestDecimal, NotANumberAndTheInfinitiesAreWrittenAsWords) {
  EXPECT_EQ(shortestDecimal(std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(shortestDecimal(-std::numeric_limits<double>::infinity()), "-inf");
}

TEST(ShortestDecimal, ItIsWhatTheStandardLibraryWritesForAnyDouble) {
  std::mt19937_64 random(1);
  std::array<char, 32> text{};
  for (int i = 0; i < 5000; ++i) {
    // Every fourth is a power of two.
    const std::uint64_t bits = random() & (i % 4 == 0 ? 0x7ff0000000000000 : ~std::uint64_t{0});
    const auto value = std::bit_cast<double>(bits);
    const double size = std::abs(value);
    if (!std::isfinite(value) || (size >= 0.0001 && size <= 9007199254740992) || size == 0)
      continue;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific);
    ASSERT_EQ(shortestFloatingPoint(value), std::string(text.data(), end.ptr));
    ASSERT_EQ(std::strtod(shortestDecimal(value).c_str(), nullptr), value);
  }
}

TEST(WholeDecimal, SecondsAreRoundedToWholeOnes) {
  EXPECT_EQ(wholeDecimal(12.4), "12");
  EXPECT_EQ(wholeDecimal(12.6), "13");
  EXPECT_EQ(wholeDecimal(12.5), "12");
  EXPECT_EQ(wholeDecimal(0), "0");
}

TEST(ParseInteger, OneSignAndDigitsAreAnInteger) {
  EXPECT_EQ(parseInteger("40"), 40);
  EXPECT_EQ(parseInteger("+40"), 40);
  EXPECT_EQ(parseInteger("-5"), -5);
  EXPECT_EQ(parseInteger("007"), 7);
  EXPECT_EQ(parseInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parseInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(ParseInteger, AnythingElseIsNone) {
  for (const auto* text : {"", "+", "-", "4x", "x4", "1.5", " 4", "4 ", "+-4", "-+4", "--4", "++4",
                           "0x10", "9223372036854775808", "12345678901234567890", "\u0664"}) {
    EXPECT_EQ(parseInteger(text), std::nullopt) << text;
  }
}

TEST(CheckedSum, ASumThatFitsIsTheSum) {
  EXPECT_EQ(checkedSum(2, -7), -5);
  EXPECT_EQ(checkedNegation(5), -5);
}

TEST(CheckedSumDeathTest, AnOverflowAborts) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(checkedSum(std::numeric_limits<std::int64_t>::max(), 1), "64-bit range");
  EXPECT_DEATH(checkedNegation(std::numeric_limits<std::int64_t>::min()), "64-bit range");
}

TEST(ShortestFloatingPoint, AlwaysShowsThatItIsNoInteger) {
  const std::vector<std::pair<double, std::string>> texts = {
      {0.0, "0.0"},
      {-0.0, "-0.0"},
      {1.0, "1.0"},
      {-3.0, "-3.0"},
      {0.1, "0.1"},
      {0.1 + 0.2, "0.30000000000000004"},
      {1732190000.0, "1732190000.0"},
      {1732190000.123, "1732190000.123"},
      {1732190000.1234567, "1732190000.1234567"},
      {0.0001, "0.0001"},
      {0.00001, "1e-05"},
      {0.000015, "1.5e-05"},
      {9007199254740991.0, "9007199254740991.0"},
      {9007199254740992.0, "9007199254740992.0"},
      {9007199254740994.0, "9.007199254740994e+15"},
      {1e16, "1e+16"},
      {-1.5e300, "-1.5e+300"},
      {-std::numeric_limits<double>::denorm_min(), "-5e-324"},
      {-2.2250738585072014e-308, "-2.2250738585072014e-308"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {-std::numeric_limits<double>::infinity(), "-inf"},
      {std::numeric_limits<double>::quiet_NaN(), "nan"},
      {-std::numeric_limits<double>::quiet_NaN(), "nan"},
  };
  for (const auto& [value, text] : texts) EXPECT_EQ(shortestFloatingPoint(value), text);
}

TEST(Hexadecimal, ANumberHasAsManyDigitsAsAskedForAndMoreWhereItNeedsThem) {
  EXPECT_EQ(hexadecimal(0, 1), "0");
  EXPECT_EQ(hexadecimal(0, 0), "");
  EXPECT_EQ(hexadecimal(0xA5, 4), "00a5");
  EXPECT_EQ(hexadecimal(0xC0000006F, 2), "c0000006f");
  EXPECT_EQ(hexadecimal(~std::uint64_t{0}, 16), "ffffffffffffffff");
}

}  // namespace
}  // namespace brivane
