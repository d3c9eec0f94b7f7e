#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "BrivaneUI/BrightnessHUDView.h"
#include "BrivaneUI/Strings.h"
#include "Tests/Support/BuiltResources.h"
#include "Tests/Support/DescribedDisplayList.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/Golden.h"

namespace brivane {
namespace {

using testing::HasSubstr;

struct BrightnessHUDViewTest : testing::Test {
  DisplayList body(const HUDModel::State& state, Appearance appearance = Appearance::light) {
    const auto model = std::make_shared<HUDModel>();
    model->setState(state);
    const BrightnessHUDView view{model, metrics.cornerRadius, metrics,
                                 BrightnessHUDView::defaultBoostColor(colors)};
    return view.body({appearance, colors, strings});
  }

  template <typename Kind>
  Kind only(const HUDModel::State& state) {
    std::vector<Kind> found;
    for (const Primitive& primitive : body(state)) {
      if (const auto* match = std::get_if<Kind>(&primitive)) found.push_back(*match);
    }
    EXPECT_EQ(found.size(), 1u);
    return found.at(0);
  }

  std::string retryLine(std::optional<std::int64_t> seconds) {
    return BrightnessHUDView::retryLine(seconds, strings);
  }

  FakeMachine machine;
  BuiltResources resources{"en"};
  CatalogColor colors{resources, machine.log()};
  const StringCatalogue strings{resources, machine.log(), userInterfaceBundle};
  HUDMetrics metrics = HUDMetrics::standard(strings);
};

TEST_F(BrightnessHUDViewTest, ACountdownBelowOneOrAbsentShowsARunningRetry) {
  EXPECT_EQ(retryLine(std::nullopt), "Retrying now…");
  EXPECT_EQ(retryLine(0), "Retrying now…");
  EXPECT_EQ(retryLine(-3), "Retrying now…");
  EXPECT_EQ(retryLine(1), "Next try in 1 s");
  EXPECT_EQ(retryLine(180), "Next try in 180 s");
}

TEST_F(BrightnessHUDViewTest, TheSymbolFollowsTheLevel) {
  const struct {
    std::int64_t level;
    std::string_view symbol;
  } cases[] = {
      {-200, "moon.fill"},   {-100, "moon.fill"}, {-1, "moon.fill"},
      {0, "sun.min"},        {49, "sun.min"},     {50, "sun.max.fill"},
      {100, "sun.max.fill"}, {101, "sparkles"},   {200, "sparkles"},
  };
  for (const auto& [level, symbol] : cases) {
    EXPECT_EQ(only<SymbolImage>(HUDModel::Level{level}).name, symbol) << level;
  }
}

TEST_F(BrightnessHUDViewTest, IconBarAndNumberStandInTheirColumns) {
  EXPECT_EQ(only<SymbolImage>(HUDModel::Level{40}).box, (Rect{23.5, 18, 18, 18}));
  EXPECT_EQ(only<MaskedFill>(HUDModel::Level{40}).area, (Rect{58, 24, 227, 6}));
  const auto number = only<TextRun>(HUDModel::Level{40});
  EXPECT_EQ(number.box.x, 360 - 22 - 38);
  EXPECT_EQ(number.box.width, 38);
  EXPECT_EQ(number.size, 15);
  EXPECT_TRUE(number.monospacedDigits);
}

TEST_F(BrightnessHUDViewTest, TheNumberIsTheLevelInDecimal) {
  EXPECT_EQ(only<TextRun>(HUDModel::Level{-99}).text, "-99");
  EXPECT_EQ(only<TextRun>(HUDModel::Level{0}).text, "0");
  EXPECT_EQ(only<TextRun>(HUDModel::Level{200}).text, "200");
}

TEST_F(BrightnessHUDViewTest, AConnectingCardHasTwoLinesAndASmallSpinner) {
  const DisplayList list = body(HUDModel::Connecting{"LG UltraFine", 3});
  const auto& spinner = std::get<Spinner>(list.at(2));
  const auto& title = std::get<TextRun>(list.at(3));
  const auto& line = std::get<TextRun>(list.at(4));
  EXPECT_EQ(list.size(), 5u);
  EXPECT_EQ(spinner.box, (Rect{24.5, 19, 16, 16}));
  EXPECT_EQ(title.text, "Connecting to display…");
  EXPECT_EQ(title.size, 13);
  EXPECT_EQ(title.weight, FontWeight::medium);
  EXPECT_EQ(line.text, "LG UltraFine \u00B7 Next try in 3 s");
  EXPECT_EQ(line.size, 11);
  EXPECT_TRUE(line.monospacedDigits);
  EXPECT_EQ(line.paint, Paint(SystemPaint{SystemColor::secondaryLabel}));
  EXPECT_EQ(title.box.y - (line.box.y + line.box.height), 1);
}

TEST_F(BrightnessHUDViewTest, TheCardShowsARunningRetry) {
  EXPECT_THAT(describe(body(HUDModel::Connecting{"LG", std::nullopt})),
              HasSubstr("\"LG · Retrying now…\""));
  EXPECT_THAT(describe(body(HUDModel::Connecting{"LG", 0})), HasSubstr("\"LG · Retrying now…\""));
}

/// The rectangles of the card's content.
struct ContentBoxes {
  std::vector<Rect> operator()(const FilledRectangle& part) const { return {part.shape.frame}; }
  std::vector<Rect> operator()(const MaskedFill& part) const {
    return {part.mask.frame, part.area};
  }
  std::vector<Rect> operator()(const TextRun& part) const { return {part.box}; }
  std::vector<Rect> operator()(const SymbolImage& part) const { return {part.box}; }
  std::vector<Rect> operator()(const Spinner& part) const { return {part.box}; }
  std::vector<Rect> operator()(const StrokedRectangle&) const { return {}; }
  std::vector<Rect> operator()(const FilledPath&) const { return {}; }
};

TEST_F(BrightnessHUDViewTest, AllContentLiesWithinTheCardAndItsPaddingAroundItsMiddle) {
  for (const HUDModel::State& state :
       {HUDModel::State(HUDModel::Level{-100}), HUDModel::State(HUDModel::Level{-99}),
        HUDModel::State(HUDModel::Level{200}), HUDModel::State(HUDModel::Level{5000}),
        HUDModel::State(HUDModel::Connecting{"LG", 3})}) {
    DisplayList content = body(state);
    content.erase(content.begin(), content.begin() + 2);
    double lowest = metrics.height;
    double highest = 0;
    for (const Primitive& primitive : content) {
      for (const Rect& box : std::visit(ContentBoxes{}, primitive)) {
        EXPECT_GE(box.x, 22);
        EXPECT_LE(box.x + box.width, 360 - 22);
        lowest = std::min(lowest, box.y);
        highest = std::max(highest, box.y + box.height);
      }
    }
    EXPECT_GE(lowest, 0);
    EXPECT_DOUBLE_EQ(lowest + highest, 54);
  }
}

TEST_F(BrightnessHUDViewTest, TheLevelRowFollowsTheMetrics) {
  metrics.width = 400;
  metrics.height = 60;
  metrics.iconSize = 20;
  metrics.iconColumnWidth = 30;
  metrics.valueSize = 17;
  metrics.valueColumnWidth = 40;
  metrics.barHeight = 10;
  metrics.spacing = 10;
  metrics.horizontalPadding = 30;
  EXPECT_EQ(only<SymbolImage>(HUDModel::Level{40}).box, (Rect{35, 20, 20, 20}));
  EXPECT_EQ(only<MaskedFill>(HUDModel::Level{40}).area, (Rect{70, 25, 250, 10}));
  EXPECT_EQ(only<TextRun>(HUDModel::Level{40}).box, (Rect{330, 0, 40, 60}));
  EXPECT_EQ(only<TextRun>(HUDModel::Level{40}).size, 17);
}

TEST_F(BrightnessHUDViewTest, TheConnectingRowFollowsTheMetrics) {
  metrics.cornerRadius = 12;
  metrics.connectingTitle = "Wait";
  metrics.connectingTitleSize = 15;
  metrics.connectingSubtitleSize = 10;
  metrics.connectingLineSpacing = 4;
  metrics.connectingSpinnerInset = 2;
  metrics.connectingSpinnerScale = ControlSize::regular;
  EXPECT_EQ(only<FilledRectangle>(HUDModel::Connecting{"LG", 3}).shape,
            (RoundedRectangle{{0, 0, 360, 54}, 12}));
  EXPECT_EQ(only<Spinner>(HUDModel::Connecting{"LG", 3}).box.width, 28);
  const DisplayList list = body(HUDModel::Connecting{"LG", 3});
  const auto& title = std::get<TextRun>(list.at(3));
  const auto& line = std::get<TextRun>(list.at(4));
  EXPECT_EQ(title.text, "Wait");
  EXPECT_EQ(title.size, 15);
  EXPECT_EQ(line.size, 10);
  EXPECT_EQ(title.box.y - (line.box.y + line.box.height), 4);
}

TEST_F(BrightnessHUDViewTest, CardsOfAllLevelsHaveTheSamePrimitives) {
  const auto kinds = [this](std::int64_t level) {
    std::vector<std::size_t> indices;
    for (const Primitive& primitive : body(HUDModel::Level{level})) {
      indices.push_back(primitive.index());
    }
    return indices;
  };
  for (const std::int64_t level : {-100, -1, 100, 101, 200}) EXPECT_EQ(kinds(level), kinds(40));
}

TEST_F(BrightnessHUDViewTest, TheCardLooksAsItDidInLightAndDark) {
  const std::vector<HUDModel::State> connecting = {HUDModel::Connecting{"LG UltraFine", 3},
                                                   HUDModel::Connecting{"LG UltraFine", {}}};
  for (const auto& [appearance, name] : {std::pair(Appearance::light, "hud-light.txt"),
                                         std::pair(Appearance::dark, "hud-dark.txt")}) {
    std::string text;
    for (const std::int64_t level : {-100, -99, -1, 0, 49, 50, 100, 101, 150, 200}) {
      text += "level " + std::to_string(level) + "\n" +
              describe(body(HUDModel::Level{level}, appearance)) + "\n";
    }
    text += "connecting, next try in 3 s\n" + describe(body(connecting[0], appearance)) + "\n";
    text += "connecting, retrying now\n" + describe(body(connecting[1], appearance));
    expectGolden(name, text);
  }
}

}  // namespace
}  // namespace brivane
