// The HUD's card as Qt draws it, pixel by pixel.
#include <gtest/gtest.h>

#include <optional>

#include "BrivaneUI/BrightnessHUDView.h"
#include "BrivaneUI/Strings.h"
#include "Machines/Qt/Toolkit/Painter.h"
#include "Tests/Machines/Qt/QtBench.h"
#include "Tests/Support/BuiltResources.h"

namespace brivane {
namespace {

struct Shown {
  std::string name;
  HUDModel::State state;
};

std::vector<Shown> states() {
  std::vector<Shown> all;
  for (const std::int64_t level : {-60, 0, 40, 75, 100, 150}) {
    all.push_back({"level" + std::to_string(level), HUDModel::Level{level}});
  }
  all.push_back({"waiting", HUDModel::Connecting{"Halden H27", 12}});
  all.push_back(
      {"retrying", HUDModel::Connecting{"A monitor with a very long name", std::nullopt}});
  return all;
}

class HUDPicturesTest : public testing::TestWithParam<std::tuple<Appearance, int>> {
 protected:
  QImage picture(const HUDModel::State& state, Appearance appearance, double scale) {
    const auto model = std::make_shared<HUDModel>();
    model->setState(state);
    const BrightnessHUDView view{model, metrics.cornerRadius, metrics,
                                 BrightnessHUDView::defaultBoostColor(colors)};
    return renderedPicture(view.body({appearance, colors, strings}),
                           {metrics.width, metrics.height, appearance, 0.3}, scale);
  }

  QtBench& bench = QtBench::shared();
  BuiltResources resources{"en"};
  CatalogColor colors{resources, bench.machine().log()};
  const StringCatalogue strings{resources, bench.machine().log(), userInterfaceBundle};
  HUDMetrics metrics = HUDMetrics::standard(strings);
};

TEST_P(HUDPicturesTest, EveryStateLooksLikeItsGoldenPicture) {
  const auto [appearance, scale] = GetParam();
  const std::string ending =
      std::string(appearance == Appearance::dark ? "dark" : "light") + "-x" + std::to_string(scale);
  for (const auto& [name, state] : states()) {
    expectGoldenPicture("hud-" + name + "-" + ending, picture(state, appearance, scale));
  }
}

INSTANTIATE_TEST_SUITE_P(Each, HUDPicturesTest,
                         testing::Combine(testing::Values(Appearance::light, Appearance::dark),
                                          testing::Values(1, 2)));

TEST_F(HUDPicturesTest, AtOneAndAHalfPixelsPerPointTheCardIsAsSharp) {
  const QImage image = picture(HUDModel::Level{75}, Appearance::dark, 1.5);
  EXPECT_EQ(image.size(), QSize(540, 81));
  expectGoldenPicture("hud-level75-dark-x1.5", image);
}

TEST_F(HUDPicturesTest, OutsideTheRoundedCornersNothingIsDrawn) {
  const QImage image = picture(HUDModel::Level{75}, Appearance::light, 2);
  const int right = image.width() - 1;
  const int bottom = image.height() - 1;
  for (const QPoint corner :
       {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)}) {
    EXPECT_EQ(qAlpha(image.pixel(corner)), 0);
  }
  EXPECT_GT(qAlpha(image.pixel(image.rect().center())), 240);
}

}  // namespace
}  // namespace brivane
