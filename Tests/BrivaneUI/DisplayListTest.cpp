#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneUI/Canvas.h"
#include "Tests/Support/DescribedDisplayList.h"

namespace brivane {
namespace {

const RoundedRectangle shape{{1, 2, 30.5, 4}, 2};

TEST(Describe, EachPrimitiveIsOneLineWithAllItsValues) {
  EXPECT_EQ(describe({FilledRectangle{shape, Paint(Color{1, 0.5, 0, 0.25})}}),
            "fill 1,2 30.5x4 radius 2 rgba(1 0.5 0 0.25)\n");
  EXPECT_EQ(describe({StrokedRectangle{shape, 1.5, Paint(SystemPaint{SystemColor::accent, 0.12})}}),
            "stroke 1,2 30.5x4 radius 2 width 1.5 accent at 0.12\n");
  EXPECT_EQ(describe({MaskedFill{shape, {1, 2, 60, 4}, Paint(Color{})}}),
            "mask 1,2 30.5x4 radius 2 fill 1,2 60x4 rgba(0 0 0 1)\n");
  EXPECT_EQ(describe({SymbolImage{{0, 0, 18, 18}, "sun.min", SystemPaint{}}}),
            "symbol \"sun.min\" 0,0 18x18 label\n");
  EXPECT_EQ(describe({Spinner{{-1, 0, 16, 16}}}), "spinner -1,0 16x16\n");
  EXPECT_EQ(describe({FilledPath{{0, 1}, {{{1, 2}, {3, 4}, {5, 6}}}, Paint(Color{})}}),
            "path 0,1 curve 1,2 3,4 5,6 rgba(0 0 0 1)\n");
}

TEST(Describe, NumbersHaveAtMostFourDecimals) {
  EXPECT_EQ(describe({Spinner{{2.0 / 3, -1.0 / 3, 0.00004, -0.00004}}}),
            "spinner 0.6667,-0.3333 0x0\n");
}

TEST(Describe, TextHasItsFontAlignmentAndInk) {
  TextRun run{{0, 0, 38, 18},
              "40",
              15,
              FontWeight::medium,
              true,
              TextAlignment::trailing,
              SystemPaint{SystemColor::secondaryLabel}};
  EXPECT_EQ(describe({run}),
            "text \"40\" 0,0 38x18 size 15 medium monospaced-digits trailing secondary-label\n");
  run.monospacedDigits = false;
  run.weight = FontWeight::semibold;
  run.alignment = TextAlignment::center;
  EXPECT_EQ(describe({run}), "text \"40\" 0,0 38x18 size 15 semibold center secondary-label\n");
}

TEST(Describe, ATextStaysOnOneLineWhateverItsCharacters) {
  EXPECT_EQ(describe({TextRun{.box = {}, .text = "a\n\"b\"\\ é·", .paint = SystemPaint{}}}),
            "text \"a\\0a\\22b\\22\\5c é·\" 0,0 0x0 size 13 regular leading label\n");
}

TEST(Describe, GradientsHaveTheirGeometryAndStops) {
  const std::vector<GradientStop> stops = {{0, Color{}}, {0.5, SystemPaint{}}};
  EXPECT_EQ(describe({FilledRectangle{shape, LinearGradient{{0, 1}, {2, 3}, stops}}}),
            "fill 1,2 30.5x4 radius 2 linear 0,1 to 2,3 [0 rgba(0 0 0 1), 0.5 label]\n");
  EXPECT_EQ(describe({FilledRectangle{shape, RadialGradient{{0, 1}, 7, stops}}}),
            "fill 1,2 30.5x4 radius 2 radial 0,1 radius 7 [0 rgba(0 0 0 1), 0.5 label]\n");
}

TEST(Describe, EverySystemColourHasItsName) {
  const auto name = [](SystemColor color) {
    return describe({SymbolImage{{}, "", SystemPaint{color, 1}}});
  };
  EXPECT_EQ(name(SystemColor::tertiaryLabel), "symbol \"\" 0,0 0x0 tertiary-label\n");
  EXPECT_EQ(name(SystemColor::separator), "symbol \"\" 0,0 0x0 separator\n");
  EXPECT_EQ(name(SystemColor::controlBackground), "symbol \"\" 0,0 0x0 control-background\n");
}

TEST(ShownText, EachTextOfThePictureIsALine) {
  EXPECT_EQ(shownText({Spinner{}, TextRun{.box = {}, .text = "Connecting", .paint = SystemPaint{}},
                       TextRun{.box = {}, .text = "LG · 3 s", .paint = SystemPaint{}}}),
            "Connecting\nLG · 3 s");
  EXPECT_EQ(shownText({Spinner{}}), "");
}

class MockCanvas : public Canvas {
 public:
  MOCK_METHOD(void, fill, (const FilledRectangle&), (override));
  MOCK_METHOD(void, stroke, (const StrokedRectangle&), (override));
  MOCK_METHOD(void, fillMasked, (const MaskedFill&), (override));
  MOCK_METHOD(void, fillPath, (const FilledPath&), (override));
  MOCK_METHOD(void, drawText, (const TextRun&), (override));
  MOCK_METHOD(void, drawSymbol, (const SymbolImage&), (override));
  MOCK_METHOD(void, drawSpinner, (const Spinner&), (override));
};

TEST(Draw, EveryPrimitiveGoesToItsOwnCallInTheOrderOfTheList) {
  const FilledRectangle filled{shape, Paint(Color{1, 0, 0, 1})};
  const StrokedRectangle stroked{shape, 2, Paint(Color{})};
  const MaskedFill masked{shape, {}, Paint(Color{})};
  const FilledPath path{{1, 1}, {}, Paint(Color{})};
  const TextRun text{.box = {}, .text = "t", .paint = Color{}};
  const SymbolImage symbol{{}, "s", Color{}};
  const Spinner spinner{{1, 2, 3, 4}};
  MockCanvas canvas;
  const testing::InSequence inOrder;
  EXPECT_CALL(canvas, drawSpinner(spinner));
  EXPECT_CALL(canvas, drawSymbol(symbol));
  EXPECT_CALL(canvas, drawText(text));
  EXPECT_CALL(canvas, fillPath(path));
  EXPECT_CALL(canvas, fillMasked(masked));
  EXPECT_CALL(canvas, stroke(stroked));
  EXPECT_CALL(canvas, fill(filled));
  draw({spinner, symbol, text, path, masked, stroked, filled}, canvas);
}

}  // namespace
}  // namespace brivane
