#include <gmock/gmock.h>

#include "Machines/Mac/Frame/DrawnColors.h"
#include "Machines/Mac/Frame/Painter.h"
#include "Tests/Mac/Machine/AppKit/AppKitBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MacPainterTest : public AppKitTest {
 protected:
  std::vector<std::string> drawn(const Primitive& primitive) {
    MacPainter painter;
    desktop.drawn.clear();
    draw({primitive}, painter);
    return desktop.drawn;
  }
};

const RoundedRectangle square{{10, 20, 30, 40}, 0};

TEST_F(MacPainterTest, ARectangleIsFilledWithItsColour) {
  EXPECT_THAT(drawn(FilledRectangle{square, Paint{Color{1, 0.5, 0, 0.25}}}),
              ElementsAre("fill rgb(1 0.5 0)*0.25: rect 10,20 30x40"));
}

TEST_F(MacPainterTest, ARectangleWithoutHeightShowsNothing) {
  EXPECT_THAT(drawn(FilledRectangle{{{10, 20, 30, 0}, 4}, Paint{Color{}}}),
              ElementsAre("fill rgb(0 0 0)*1: "));
}

TEST_F(MacPainterTest, CornersSetInGentlyAndMeetTheArcInTheirMiddle) {
  EXPECT_THAT(drawn(FilledRectangle{{{0, 0, 100, 50}, 10}, Paint{Color{}}}),
              ElementsAre("fill rgb(0 0 0)*1: move 12.8,0, line 87.2,0, "
                          "curve 96.456,0 100,3.544 100,12.8, line 100,37.2, "
                          "curve 100,46.456 96.456,50 87.2,50, line 12.8,50, "
                          "curve 3.544,50 0,46.456 0,37.2, line 0,12.8, "
                          "curve 0,3.544 3.544,0 12.8,0, close"));
}

TEST_F(MacPainterTest, ARadiusBeyondHalfOfTheHeightMakesACapsule) {
  const auto capsule = drawn(FilledRectangle{{{0, 0, 100, 6}, 50}, Paint{Color{}}});
  EXPECT_EQ(capsule, drawn(FilledRectangle{{{0, 0, 100, 6}, 3}, Paint{Color{}}}));
}

TEST_F(MacPainterTest, SystemColoursKeepTheirOwnTranslucence) {
  EXPECT_THAT(drawn(FilledRectangle{square, Paint{SystemPaint{SystemColor::label, 1}}}),
              ElementsAre("fill label*0.8: rect 10,20 30x40"));
  EXPECT_THAT(drawn(FilledRectangle{square, Paint{SystemPaint{SystemColor::label, 0.5}}}),
              ElementsAre("fill label*0.4: rect 10,20 30x40"));
  EXPECT_THAT(drawn(FilledRectangle{square, Paint{SystemPaint{SystemColor::accent, 0.12}}}),
              ElementsAre("fill accent*0.12: rect 10,20 30x40"));
  EXPECT_THAT(drawn(FilledRectangle{square, Paint{SystemPaint{SystemColor::tertiaryLabel, 1}}}),
              ElementsAre("fill tertiaryLabel*0.25: rect 10,20 30x40"));
}

TEST_F(MacPainterTest, EverySystemColourIsTheDesktopsOwn) {
  const std::vector<std::pair<SystemColor, std::string>> names = {
      {SystemColor::label, "label*0.8"},
      {SystemColor::secondaryLabel, "secondaryLabel*0.5"},
      {SystemColor::tertiaryLabel, "tertiaryLabel*0.25"},
      {SystemColor::accent, "accent*1"},
      {SystemColor::separator, "separator*0.1"},
      {SystemColor::controlBackground, "controlBackground*1"}};
  for (const auto& [color, name] : names) EXPECT_EQ(textOfColor(systemColor(color)), name);
}

TEST_F(MacPainterTest, ALineIsTheAreaBetweenTwoOutlinesAroundTheEdge) {
  EXPECT_THAT(drawn(StrokedRectangle{square, 2, Paint{SystemPaint{SystemColor::separator, 1}}}),
              ElementsAre(testing::AllOf(testing::StartsWith("fill separator*0.1: even-odd, move"),
                                         testing::HasSubstr("rect 11,21 28x38"))));
}

TEST_F(MacPainterTest, AGradientFillsWithinTheOutlineAndNowhereElse) {
  const LinearGradient gradient{
      {0, 0}, {200, 0}, {{0, Color{1, 1, 1}}, {0.667, Color{1, 1, 1}}, {0.667, Color{1, 0, 0}}}};
  EXPECT_THAT(drawn(FilledRectangle{square, gradient}),
              ElementsAre("save", "clip: rect 10,20 30x40",
                          "gradient 0,0 to 200,0, options 3: rgb(1 1 1)*1@0 rgb(1 1 1)*1@0.667 "
                          "rgb(1 0 0)*1@0.667",
                          "restore"));
}

TEST_F(MacPainterTest, ARadialGradientBeginsInItsCentre) {
  EXPECT_THAT(drawn(FilledRectangle{square, RadialGradient{{5, 6}, 7, {{0, Color{}}}}}),
              ElementsAre("save", "clip: rect 10,20 30x40",
                          "radial 5,6 0 to 5,6 7, options 3: rgb(0 0 0)*1@0", "restore"));
}

TEST_F(MacPainterTest, AMaskedFillShowsWithinAreaAndMask) {
  EXPECT_THAT(drawn(MaskedFill{square, {0, 0, 20, 90}, Paint{Color{}}}),
              ElementsAre("save", "clip: rect 0,0 20x90", "fill rgb(0 0 0)*1: rect 10,20 30x40",
                          "restore"));
}

TEST_F(MacPainterTest, APathIsClosed) {
  EXPECT_THAT(drawn(FilledPath{{1, 2}, {{{3, 4}, {5, 6}, {7, 8}}}, Paint{Color{}}}),
              ElementsAre("fill rgb(0 0 0)*1: move 1,2, curve 3,4 5,6 7,8, close"));
}

TEST_F(MacPainterTest, TextStandsInTheMiddleOfItsBoxAndEndsInAnEllipsis) {
  EXPECT_THAT(drawn(TextRun{.box = {10, 0, 100, 54},
                            .text = "Halden",
                            .size = 15,
                            .weight = FontWeight::medium,
                            .monospacedDigits = true,
                            .alignment = TextAlignment::trailing,
                            .paint = SystemPaint{SystemColor::secondaryLabel, 1}}),
              ElementsAre("text 'Halden' in 10,18 100x18, digits 15 weight 0.23, "
                          "secondaryLabel*0.5, aligned " +
                          std::to_string(NSTextAlignmentRight) + ", breaking 4"));
}

TEST_F(MacPainterTest, PlainTextIsInTheSystemsFont) {
  EXPECT_THAT(drawn(TextRun{.box = {0, 0, 100, 12}, .text = "a", .size = 10, .paint = Color{}}),
              ElementsAre("text 'a' in 0,0 100x12, system 10 weight 0, rgb(0 0 0)*1, aligned 0, "
                          "breaking 4"));
}

TEST_F(MacPainterTest, TextMayBeHeavierAndInTheMiddle) {
  EXPECT_THAT(drawn(TextRun{.box = {0, 0, 100, 12},
                            .text = "a",
                            .size = 10,
                            .weight = FontWeight::semibold,
                            .alignment = TextAlignment::center,
                            .paint = Color{}}),
              ElementsAre("text 'a' in 0,0 100x12, system 10 weight 0.3, rgb(0 0 0)*1, aligned " +
                          std::to_string(NSTextAlignmentCenter) + ", breaking 4"));
}

TEST_F(MacPainterTest, ASymbolIsAsLargeAsFitsInTheMiddleOfItsBox) {
  EXPECT_THAT(
      drawn(SymbolImage{{0, 0, 20, 20}, "sun.max.fill", SystemPaint{SystemColor::label, 1}}),
      ElementsAre("symbol sun.max.fill (20 points, weight 0, label*0.8) in 0,2 20x16"));
}

TEST_F(MacPainterTest, ASymbolThatTheSystemDoesNotKnowShowsNothing) {
  EXPECT_THAT(drawn(SymbolImage{{0, 0, 20, 20}, "no.such.symbol", Color{}}), IsEmpty());
}

TEST_F(MacPainterTest, SpinnersAreNotDrawn) {
  EXPECT_THAT(drawn(Spinner{{0, 0, 20, 20}}), IsEmpty());
}

}  // namespace
}  // namespace brivane
