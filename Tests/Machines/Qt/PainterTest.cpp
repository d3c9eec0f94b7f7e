#include <gtest/gtest.h>

#include <QFontInfo>
#include <QGuiApplication>

#include "Machines/Qt/Toolkit/Painter.h"
#include "Machines/Qt/Toolkit/Symbols.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

constexpr Color red{1, 0, 0, 1};
constexpr Color blue{0, 0, 1, 1};

class PainterTest : public testing::Test {
 protected:
  /// 100 by 100 points.
  QImage drawn(const DisplayList& list, double scale = 1, double spinnerTurns = 0) {
    return renderedPicture(list, {100, 100, Appearance::light, spinnerTurns}, scale);
  }
  /// The smallest rectangle around everything that was drawn.
  static QRect inked(const QImage& image) {
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (qAlpha(image.pixel(x, y)) > 8) box |= QRect(x, y, 1, 1);
      }
    }
    return box;
  }
  static TextRun text(const std::string& words, TextAlignment alignment) {
    return {.box = {10, 40, 60, 20}, .text = words, .alignment = alignment, .paint = red};
  }

  QtBench& bench = QtBench::shared();
};

TEST_F(PainterTest, TheOriginIsTheLowerLeft) {
  const DisplayList list = {FilledRectangle{{{10, 20, 30, 5}, 0}, Paint{red}}};
  EXPECT_EQ(inked(drawn(list)), QRect(10, 75, 30, 5));
  EXPECT_EQ(inked(drawn(list, 2)), QRect(20, 150, 60, 10));
}

TEST_F(PainterTest, StopsAtOnePlaceChangeTheColourAbruptly) {
  const LinearGradient gradient{{0, 50}, {100, 50}, {{0, red}, {0.5, red}, {0.5, blue}, {1, blue}}};
  const QImage image = drawn({FilledRectangle{{{0, 0, 100, 100}, 0}, gradient}});
  EXPECT_EQ(image.pixelColor(48, 50), QColor(255, 0, 0));
  EXPECT_EQ(image.pixelColor(51, 50), QColor(0, 0, 255));
}

TEST_F(PainterTest, StopsAtOneEndChangeTheColourThere) {
  const LinearGradient gradient{{0, 50}, {50, 50}, {{0, red}, {1, red}, {1, blue}}};
  const QImage image = drawn({FilledRectangle{{{0, 0, 100, 100}, 0}, gradient}});
  EXPECT_EQ(image.pixelColor(45, 50), QColor(255, 0, 0));
  EXPECT_EQ(image.pixelColor(60, 50), QColor(0, 0, 255));
}

TEST_F(PainterTest, ARectangleWithoutWidthOrHeightShowsNothing) {
  EXPECT_TRUE(inked(drawn({FilledRectangle{{{10, 10, 0, 20}, 5}, Paint{red}},
                           StrokedRectangle{{{10, 10, 20, 0}, 5}, 2, Paint{red}},
                           MaskedFill{{{10, 10, 0, 6}, 3}, {0, 0, 100, 6}, Paint{red}}}))
                  .isEmpty());
}

TEST_F(PainterTest, AMaskedFillEndsWithItsMaskAndWithItsArea) {
  EXPECT_EQ(inked(drawn({MaskedFill{{{10, 10, 50, 6}, 0}, {0, 0, 40, 100}, Paint{red}}})),
            QRect(10, 84, 30, 6));
}

TEST_F(PainterTest, TextEndsWithinItsBoxHoweverLongItIs) {
  const QRect box = inked(drawn({text(std::string(80, 'm'), TextAlignment::leading)}));
  EXPECT_GE(box.left(), 10);
  EXPECT_LE(box.right(), 70);
  EXPECT_GT(box.width(), 40);
}

TEST_F(PainterTest, TextStandsWhereItsAlignmentSays) {
  const QRect leading = inked(drawn({text("75", TextAlignment::leading)}));
  const QRect center = inked(drawn({text("75", TextAlignment::center)}));
  const QRect trailing = inked(drawn({text("75", TextAlignment::trailing)}));
  EXPECT_LT(leading.left(), 13);
  EXPECT_NEAR(center.center().x(), 40, 1.5);
  EXPECT_GT(trailing.right(), 66);
  EXPECT_NEAR(center.center().y(), 50, 1.5);
}

/// With digits of different widths.
class PainterWithUnequalDigitsTest : public PainterTest {
 public:
  ~PainterWithUnequalDigitsTest() override { QGuiApplication::setFont(before); }

 protected:
  PainterWithUnequalDigitsTest() {
    EXPECT_TRUE(QFontInfo(QFont("Inter")).exactMatch()) << "package fonts-inter";
    QGuiApplication::setFont(QFont("Inter"));
  }

  static TextRun number(const std::string& words, TextAlignment alignment) {
    TextRun run = text(words, alignment);
    run.monospacedDigits = true;
    return run;
  }

  const QFont before = QGuiApplication::font();
};

TEST_F(PainterWithUnequalDigitsTest, TextBehindACountingNumberDoesNotMove) {
  const int one = inked(drawn({number("111|", TextAlignment::leading)})).right();
  const int zero = inked(drawn({number("000|", TextAlignment::leading)})).right();
  EXPECT_EQ(one, zero);
  EXPECT_LT(inked(drawn({text("111|", TextAlignment::leading)})).right(), one)
      << "digits that are not to be of one width are not";
}

TEST_F(PainterWithUnequalDigitsTest, ALineOfDigitsEndsWithinItsBoxToo) {
  for (const auto alignment : {TextAlignment::leading, TextAlignment::trailing}) {
    const QRect box = inked(drawn({number(std::string(40, '1'), alignment)}));
    EXPECT_GE(box.left(), 10);
    EXPECT_LE(box.right(), 70);
    EXPECT_GT(box.width(), 40);
  }
}

TEST_F(PainterTest, EverySymbolFillsItsSquareAndStaysInIt) {
  for (const std::string name : {"moon.fill", "sun.min", "sun.max.fill", "sparkles"}) {
    const QRect box = inked(drawn({SymbolImage{{20, 20, 60, 40}, name, red}}));
    EXPECT_TRUE(QRect(30, 40, 40, 40).contains(box)) << name;
    EXPECT_GT(box.height(), 28) << name;
  }
}

TEST_F(PainterTest, AnUnknownSymbolShowsNothing) {
  EXPECT_TRUE(symbolOutline("bolt.fill", {0, 0, 1, 1}).isEmpty());
  EXPECT_TRUE(inked(drawn({SymbolImage{{20, 20, 60, 40}, "bolt.fill", red}})).isEmpty());
}

TEST_F(PainterTest, ASpinnerTurns) {
  const DisplayList list = {Spinner{{20, 20, 60, 60}}};
  EXPECT_NE(drawn(list, 1, 0.0), drawn(list, 1, 0.3));
  EXPECT_EQ(drawn(list, 1, 0.05), drawn(list, 1, 1.05)) << "a turn later it looks the same";
}

}  // namespace
}  // namespace brivane
