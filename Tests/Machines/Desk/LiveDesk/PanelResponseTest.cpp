#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>

#include "Machines/Desk/Hardware/GammaTable.h"
#include "Machines/Desk/LiveDesk/PanelResponse.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

constexpr auto white = SignalPicture::white;
constexpr auto brightest = SignalPicture::brightest;

GammaTable scaled(float factor) {
  const GammaCurve curve = {0, factor};
  return {curve, curve, curve};
}

const GammaTable linear = scaled(1);

TEST(PanelResponse, WhiteIsAsBrightAsTheBacklight) {
  for (const double backlight : {1.0, 0.4, 0.0}) {
    EXPECT_DOUBLE_EQ(PanelResponse({backlight, 1}, linear).light(1, white), backlight);
  }
}

TEST(PanelResponse, HalfASignalIsTheLightThatTheExponentGives) {
  EXPECT_NEAR(PanelResponse({1, 1}, linear).light(0, white / 2), std::pow(0.5, 2.2), 1e-12);
  EXPECT_EQ(PanelResponse({1, 1}, linear).light(0, 0), 0);
}

TEST(PanelResponse, HighlightsAreWhiteWithoutHeadroomAndAsBrightAsItLetsThemBe) {
  EXPECT_DOUBLE_EQ(PanelResponse({1, 1}, linear).light(0, brightest), 1);
  EXPECT_DOUBLE_EQ(PanelResponse({1, 4}, linear).light(0, brightest), 4);
  EXPECT_DOUBLE_EQ(PanelResponse({1, 1.6}, linear).light(0, brightest), 1.6);
  EXPECT_DOUBLE_EQ(PanelResponse({0.5, 4}, linear).light(0, 2 * white), 1);
}

TEST(PanelResponse, ADimmingTableDarkensSignalsAndHighlights) {
  const PanelResponse response({1, 4}, scaled(0.5F));
  EXPECT_NEAR(response.light(0, white), std::pow(0.5, 2.2), 1e-12);
  EXPECT_DOUBLE_EQ(response.light(0, brightest), 2);
}

TEST(PanelResponse, WithoutHeadroomADimmedHighlightIsNoBrighterThanDimmedWhite) {
  const PanelResponse response({1, 1}, scaled(0.5F));
  EXPECT_EQ(response.light(0, brightest), response.light(0, white));
}

TEST(PanelResponse, ATableAboveWhiteUsesTheHeadroomAndNoMore) {
  EXPECT_DOUBLE_EQ(PanelResponse({1, 4}, scaled(2)).light(0, white), 2);
  EXPECT_DOUBLE_EQ(PanelResponse({1, 1.5}, scaled(2)).light(0, white), 1.5);
  EXPECT_DOUBLE_EQ(PanelResponse({1, 4}, scaled(2)).light(0, brightest), 4);
}

TEST(PanelResponse, ChannelsHaveCurvesOfTheirOwnWhichAreInterpolated) {
  const GammaTable table = {GammaCurve{0, 1}, GammaCurve{0, 0.25F, 1}, GammaCurve{0, 0}};
  const PanelResponse response({1, 1}, table);
  EXPECT_NEAR(response.light(0, white / 4), std::pow(0.25, 2.2), 1e-12);
  EXPECT_NEAR(response.light(1, white / 4), std::pow(0.125, 2.2), 1e-12);
  EXPECT_EQ(response.light(2, white), 0);
}

TEST(PanelResponse, AWindowShowsBlackAsBlackAndLeavesRoomAboveWhite) {
  const PanelResponse response({1, 4}, linear);
  EXPECT_EQ(response.shown(0, 0), 0);
  EXPECT_EQ(response.shown(0, white), 203);
  EXPECT_GT(response.shown(0, brightest), 235);
  const PanelResponse off({0, 4}, linear);
  EXPECT_EQ(off.shown(0, brightest), 0);
}

TEST(PanelResponse, WhatIsBrighterIsNeverShownDarker) {
  for (const double headroom : {1.0, 1.6, 4.0}) {
    const PanelResponse response({0.7, headroom}, scaled(1.3F));
    for (std::uint16_t signal = 1; signal <= brightest; ++signal) {
      EXPECT_GE(response.shown(2, signal),
                response.shown(2, static_cast<std::uint16_t>(signal - 1)));
    }
  }
}

TEST(PanelResponse, APictureIsShownPixelByPixel) {
  const SignalPicture picture{2, 1, {{white, 0, 0}, {0, white, white / 2}}};
  const PanelResponse response({1, 1}, linear);
  const auto half = response.shown(2, white / 2);
  EXPECT_THAT(response.shown(picture), testing::ElementsAre(0xFFCB0000, 0xFF00CB00 | half));
}

TEST(PanelLight, FollowsLevelSleepAndHeadroomOfTheDisplay) {
  TestDesk desk(R"({"displays": [
    {"identifier": 1, "builtIn": true, "headroom": 4},
    {"identifier": 2, "firmware": {"level": 255, "maximum": 255}},
    {"identifier": 3, "firmware": null}]})");
  auto& hardware = *desk.hardware;
  EXPECT_EQ(panelLight(hardware, 2), (PanelLight{1, 1}));
  EXPECT_EQ(panelLight(hardware, 3), (PanelLight{1, 1})) << "nothing is known of its level";
  EXPECT_DOUBLE_EQ(panelLight(hardware, 1)->backlight, 0.01 + 0.99 * 0.5);
  EXPECT_EQ(panelLight(hardware, 1)->headroom, 4);
  hardware.monitors.setLevelByButtons(2, 0);
  EXPECT_DOUBLE_EQ(panelLight(hardware, 2)->backlight, 0.1) << "it still gives light";
  hardware.monitors.setLevelByButtons(2, 60000);
  EXPECT_EQ(panelLight(hardware, 2)->backlight, 1) << "above its maximum it gives no more";
  hardware.monitors.fallAsleep(2);
  EXPECT_EQ(panelLight(hardware, 2)->backlight, 0);
  hardware.changes.sleepSystem();
  EXPECT_EQ(panelLight(hardware, 1)->backlight, 0);
  hardware.changes.unplug(2);
  EXPECT_EQ(panelLight(hardware, 2), std::nullopt);
}

TEST(TestPicture, HasEverySizeAndEveryKindOfSignal) {
  const auto picture = testPicture(320, 180);
  ASSERT_EQ(picture.pixels.size(), 320u * 180);
  std::set<SignalPicture::Pixel> colors(picture.pixels.begin(), picture.pixels.end());
  constexpr auto greys = std::to_array<std::uint16_t>(
      {0, 26, 51, 77, 102, 128, 154, 179, 205, 230, 256, 320, 512, 768, 1024});
  for (const auto step : greys) {
    EXPECT_TRUE(colors.contains({step, step, step})) << step;
  }
  EXPECT_TRUE(colors.contains({white, 0, 0}));
  EXPECT_TRUE(colors.contains({0, white, white}));
  EXPECT_GT(colors.size(), 2000u) << "and gradients";
  EXPECT_EQ(testPicture(1, 1).pixels.size(), 1u);
  EXPECT_TRUE(testPicture(0, 5).pixels.empty());
}

}  // namespace
}  // namespace brivane
