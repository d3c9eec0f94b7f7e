#include <gtest/gtest.h>

#include "Machines/Common/Frame/Transition.h"

namespace brivane {
namespace {

Primitive bar(double width) {
  return MaskedFill{{{0, 0, width, 6}, 3}, {0, 0, 200, 6}, Paint{Color{}}};
}

Primitive symbol(const std::string& name) {
  return SymbolImage{{0, 0, 18, 18}, name, SystemPaint{SystemColor::label, 0.8}};
}

Primitive number(const std::string& text) {
  return TextRun{.box = {0, 0, 38, 54}, .text = text, .paint = Color{}};
}

TEST(Transition, BarsGrowAndNumbersAreTheNewOnesAtOnce) {
  const DisplayList half = between({bar(100), number("20")}, {bar(200), number("50")}, 0.5);
  EXPECT_EQ(half, (DisplayList{bar(150), number("50")}));
}

TEST(Transition, SymbolsAreFadedOver) {
  const DisplayList quarter = between({symbol("sun.min")}, {symbol("sun.max.fill")}, 0.25);
  ASSERT_EQ(quarter.size(), 2u);
  EXPECT_EQ(std::get<SymbolImage>(quarter[0]).name, "sun.min");
  EXPECT_DOUBLE_EQ(std::get<SystemPaint>(std::get<SymbolImage>(quarter[0]).paint).opacity, 0.6);
  EXPECT_DOUBLE_EQ(std::get<SystemPaint>(std::get<SymbolImage>(quarter[1]).paint).opacity, 0.2);
}

TEST(Transition, ASymbolThatStaysIsDrawnOnce) {
  EXPECT_EQ(between({symbol("sun.min")}, {symbol("sun.min")}, 0.5), DisplayList{symbol("sun.min")});
}

TEST(Transition, AtItsEndItIsTheNewPicture) {
  EXPECT_EQ(between({symbol("sun.min"), bar(1)}, {symbol("moon.fill"), bar(2)}, 1),
            (DisplayList{symbol("moon.fill"), bar(2)}));
}

TEST(Transition, OneThatIsInterruptedKeepsItsBarAndHasTheNewSymbolOnly) {
  EXPECT_EQ(interrupted({symbol("sun.min"), bar(100)}, {symbol("moon.fill"), bar(200)}, 0.5),
            (DisplayList{symbol("moon.fill"), bar(150)}));
  EXPECT_EQ(interrupted({bar(10)}, {symbol("moon.fill"), bar(20)}, 0.5),
            (DisplayList{symbol("moon.fill"), bar(20)}));
}

TEST(Transition, PicturesOfDifferentPartsHaveNothingInBetween) {
  const DisplayList level = {symbol("sun.min"), bar(10)};
  const DisplayList connecting = {Spinner{{0, 0, 16, 16}}, number("Connecting")};
  EXPECT_EQ(between(level, connecting, 0.5), connecting);
  EXPECT_EQ(between({}, level, 0.5), level);
}

}  // namespace
}  // namespace brivane
