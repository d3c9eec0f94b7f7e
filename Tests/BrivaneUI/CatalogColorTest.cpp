#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "BrivaneUI/BrightnessHUDView.h"
#include "BrivaneUI/CatalogColor.h"
#include "Tests/Support/BuiltResources.h"
#include "Tests/Support/DescribedDisplayList.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string warning(const std::string& name) {
  return "Brivane: color asset \"" + name +
         "\" was not found in the compiled catalogue — Colors.xcassets was likely copied but not "
         "compiled. Build with \"cmake --build build\", which compiles it. Falling back to a "
         "built-in colour so the HUD still looks right.";
}

struct CatalogColorTest : testing::Test {
  void giveCatalogue(const std::string& text) {
    machine.bundles.files["Brivane_BrivaneUI.bundle/Colors.catalogue"] = text;
  }

  FakeMachine machine;
  CatalogColor colors{machine.resources(), machine.log()};
};

TEST_F(CatalogColorTest, AColourOfTheCatalogueIsUsedInBothAppearances) {
  giveCatalogue("BoostColor light 0.9 0.4 0.1 1\nBoostColor dark 1 0.5 0.2 0.8\n");
  EXPECT_EQ(colors.boostColor().resolved(Appearance::light), (Color{0.9, 0.4, 0.1, 1}));
  EXPECT_EQ(colors.boostColor().resolved(Appearance::dark), (Color{1, 0.5, 0.2, 0.8}));
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(CatalogColorTest, WithoutACatalogueEveryColourIsBuiltInAndLoggedAsMissingOnce) {
  const Color orange{1, 0.5098, 0.2745, 1};
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(colors.levelBarNormalFill(), (DynamicColor{{0, 0, 0, 0.72}, {1, 1, 1, 0.72}}));
    EXPECT_EQ(colors.levelBarTrack(),
              (DynamicColor{{0, 0, 0, 0.11858823529411766}, {1, 1, 1, 0.11858823529411766}}));
    EXPECT_EQ(colors.boostColor(), (DynamicColor{orange, orange}));
  }
  EXPECT_THAT(
      machine.systemLog.lines,
      ElementsAre(warning("LevelBarNormalFill"), warning("LevelBarTrack"), warning("BoostColor")));
}

TEST_F(CatalogColorTest, AMissingBoostColourIsOrangeAndLoggedOnceHoweverManyHUDViewsAreBuilt) {
  giveCatalogue(
      "LevelBarNormalFill light 0 0 0 1\nLevelBarNormalFill dark 1 1 1 1\n"
      "LevelBarTrack light 0 0 0 0.1\nLevelBarTrack dark 1 1 1 0.1\n");
  const StringCatalogue strings(machine.resources(), machine.log(), "none");
  for (int time = 0; time < 5; ++time) {
    const auto model = std::make_shared<HUDModel>();
    model->setState(HUDModel::Level{150});
    const BrightnessHUDView view{model, 24, HUDMetrics::standard(strings),
                                 BrightnessHUDView::defaultBoostColor(colors)};
    EXPECT_THAT(describe(view.body({Appearance::dark, colors, strings})),
                testing::HasSubstr("1 rgba(1 0.5098 0.2745 1)]"));
  }
  EXPECT_THAT(machine.systemLog.lines, ElementsAre(warning("BoostColor")));
}

TEST_F(CatalogColorTest, AColourIsLookedUpOnceAndKept) {
  colors.boostColor();
  giveCatalogue("BoostColor light 0 0 0 1\nBoostColor dark 0 0 0 1\n");
  EXPECT_EQ(colors.boostColor().light, (Color{1, 0.5098, 0.2745, 1}));
}

TEST_F(CatalogColorTest, SeveralThreadsTogetherLogAMissingColourOnce) {
  std::vector<std::thread> threads;
  for (int count = 0; count < 4; ++count) {
    threads.emplace_back([&] { colors.logMissingOnce("BoostColor"); });
  }
  for (std::thread& thread : threads) thread.join();
  colors.logMissingOnce("LevelBarTrack");
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre(warning("BoostColor"), warning("LevelBarTrack")));
}

TEST_F(CatalogColorTest, TheBuiltBundleHasAllColoursAndTheyDifferByAppearance) {
  BuiltResources resources("en");
  CatalogColor shipped(resources, machine.log());
  for (const auto& color :
       {shipped.levelBarNormalFill(), shipped.levelBarTrack(), shipped.boostColor()}) {
    EXPECT_NE(color.light, color.dark);
  }
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

}  // namespace
}  // namespace brivane
