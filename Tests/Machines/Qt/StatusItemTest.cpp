// The picture for the tray.
#include <gtest/gtest.h>

#include "BrivaneUI/AppIconArtwork.h"
#include "Machines/Qt/Toolkit/StatusIcon.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

class StatusIconTest : public testing::TestWithParam<int> {
 protected:
  /// The button's picture in that size.
  static QImage drawn(const StatusButton& button, int side) {
    return statusIcon(button).pixmap(QSize(side, side)).toImage();
  }

  QtBench& bench = QtBench::shared();
};

TEST_P(StatusIconTest, InEverySizeOfATrayItIsDrawnForThatSize) {
  const int side = GetParam();
  const QImage image =
      drawn({AppIconArtwork().body(), AppIconArtwork::canvas, AppIconArtwork::canvas, ""}, side);
  EXPECT_EQ(image.size(), QSize(side, side));
  EXPECT_EQ(qAlpha(image.pixel(image.rect().center())), 255);
  EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
}

TEST_P(StatusIconTest, AWidePictureIsAsWideAsTheTrayAndKeepsItsShape) {
  const int side = GetParam();
  const QImage image =
      drawn({{FilledRectangle{{{0, 0, 40, 20}, 0}, Paint{Color{1, 0, 0, 1}}}}, 40, 20, ""}, side);
  EXPECT_EQ(image.size(), QSize(side, side / 2));
}

INSTANTIATE_TEST_SUITE_P(Each, StatusIconTest, testing::Values(16, 22, 24, 32, 48, 64, 128));

}  // namespace
}  // namespace brivane
