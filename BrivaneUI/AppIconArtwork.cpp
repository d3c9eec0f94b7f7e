// The margin and the corner radius are those of the Mac's icon grid: 824 of 1024 points, radius
// 185.
#include "BrivaneUI/AppIconArtwork.h"

#include "BrivaneUI/SparklingMonitorMark.h"

namespace brivane {
namespace {

constexpr double cornerRadius = 185;
constexpr double markWidth = 590;
constexpr double glowRadius = 480;

constexpr Color skyTop{0.27, 0.25, 0.55, 1};
constexpr Color skyBottom{0.07, 0.06, 0.2, 1};
constexpr Color glowMiddle{1, 0.62, 0.3, 0.6};
constexpr Color glowHalfway{0.98, 0.5, 0.36, 0.22};
constexpr Color glowEdge{0.9, 0.4, 0.4, 0};

}  // namespace

DisplayList AppIconArtwork::body() const {
  const RoundedRectangle tile{visiblePart, cornerRadius};
  const double middle = canvas / 2;
  const double markHeight = SparklingMonitorMark::height(markWidth);
  const Rect mark{middle - markWidth / 2, middle - markHeight / 2, markWidth, markHeight};
  const LinearGradient sky{
      {middle, canvas - margin}, {middle, margin}, {{0, skyTop}, {1, skyBottom}}};
  const RadialGradient glow{{middle, mark.y + markHeight * 0.58},
                            glowRadius,
                            {{0, glowMiddle}, {0.45, glowHalfway}, {1, glowEdge}}};
  DisplayList list = {FilledRectangle{tile, sky}, FilledRectangle{tile, glow}};
  const DisplayList lines = SparklingMonitorMark{}.body(mark);
  list.insert(list.end(), lines.begin(), lines.end());
  return list;
}

}  // namespace brivane
