#include <gtest/gtest.h>

#include "BrivaneUI/ColorCatalogue.h"

namespace brivane {
namespace {

const std::string darkLine = "C dark 1 1 1 1\n";

TEST(ColorCatalogue, AColourHasTheComponentsOfItsTwoLines) {
  const ColorCatalogue catalogue("C light 0 0.25 1 0.118588235294\n" + darkLine);
  EXPECT_EQ(catalogue.color("C"), (DynamicColor{{0, 0.25, 1, 0.118588235294}, {1, 1, 1, 1}}));
}

TEST(ColorCatalogue, TheLastLineNeedsNoLineEnd) {
  EXPECT_TRUE(ColorCatalogue(darkLine + "C light 0 0 0 0").color("C"));
}

TEST(ColorCatalogue, AColourForOneAppearanceOnlyIsMissing) {
  EXPECT_FALSE(ColorCatalogue(darkLine).color("C"));
  EXPECT_FALSE(ColorCatalogue("C light 0 0 0 1\n").color("C"));
  EXPECT_FALSE(ColorCatalogue("").color("C"));
}

TEST(ColorCatalogue, AnInvalidLineIsIgnored) {
  for (const std::string line :
       {"C light 0 0 0", "C light 0 0 0 1 1", "C light 0 0 0 2", "C light 0 0 0 -0.5",
        "C light 0 0 0 .5", "C light 0 0 0 1.5", "C light 0 0 0 0.5x", "C light 0 0 0 0,5",
        "C light 0 0 0 1e-1", "C light 0 0 0 0.1234567890123456789", "C bright 0 0 0 1",
        "C  light 0 0 0 1", "D light 0 0 0 1", "", "nonsense"}) {
    EXPECT_FALSE(ColorCatalogue(line + "\n" + darkLine).color("C")) << line;
  }
}

}  // namespace
}  // namespace brivane
