#include <gtest/gtest.h>

#include "BrivaneUI/HUDMetrics.h"
#include "BrivaneUI/Strings.h"
#include "Tests/Support/BuiltResources.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

HUDMetrics standardIn(const std::string& language) {
  FakeMachine machine;
  BuiltResources resources(language);
  return HUDMetrics::standard(StringCatalogue(resources, machine.log(), userInterfaceBundle));
}

TEST(HUDMetrics, TheStandardCardHasTheseMeasures) {
  const HUDMetrics metrics = standardIn("en");
  EXPECT_EQ(metrics.width, 360);
  EXPECT_EQ(metrics.height, 54);
  EXPECT_EQ(metrics.cornerRadius, 24);
  EXPECT_EQ(metrics.iconSize, 18);
  EXPECT_EQ(metrics.iconColumnWidth, 21);
  EXPECT_EQ(metrics.valueSize, 15);
  EXPECT_EQ(metrics.valueColumnWidth, 38);
  EXPECT_EQ(metrics.barHeight, 6);
  EXPECT_EQ(metrics.spacing, 15);
  EXPECT_EQ(metrics.horizontalPadding, 22);
  EXPECT_EQ(metrics.connectingTitleSize, 13);
  EXPECT_EQ(metrics.connectingSubtitleSize, 11);
  EXPECT_EQ(metrics.connectingLineSpacing, 1);
  EXPECT_EQ(metrics.connectingSpinnerInset, 0);
  EXPECT_EQ(metrics.connectingSpinnerScale, ControlSize::small);
}

TEST(HUDMetrics, TheTitleIsInTheUsersLanguage) {
  EXPECT_EQ(standardIn("en").connectingTitle, "Connecting to display…");
  EXPECT_EQ(standardIn("fr-CA").connectingTitle, "Connexion à l’écran…");
}

}  // namespace
}  // namespace brivane
