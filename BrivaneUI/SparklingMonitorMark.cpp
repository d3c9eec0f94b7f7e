// All lengths are fractions of the mark's width, so that the mark looks alike at every size.
#include "BrivaneUI/SparklingMonitorMark.h"

#include <array>

#include "BrivaneUI/SparkleShape.h"

namespace brivane {
namespace {

constexpr double screenHeight = 0.66;
constexpr double frameThickness = 0.062;
constexpr double screenRadius = 0.13;
constexpr double gap = 0.062;
constexpr double standWidth = 0.42;
constexpr double standHeight = 0.062;
constexpr double sparklePinch = 0.72;

constexpr Color lightTop{1, 0.95, 0.78, 1};
constexpr Color lightBottom{1, 0.6, 0.27, 1};
constexpr Color sparkleTop{1, 1, 0.96, 1};
constexpr Color sparkleBottom{1, 0.84, 0.55, 1};

struct Sparkle {
  /// Centre, from the lower left of the screen, and width.
  double x = 0;
  double y = 0;
  double size = 0;
};

constexpr std::array<Sparkle, 3> sparkles = {{
    {0.425, 0.33, 0.44},
    {0.725, 0.455, 0.2},
    {0.71, 0.2, 0.13},
}};

LinearGradient downwards(const Rect& rect, const Color& top, const Color& bottom) {
  return {{rect.x, rect.y + rect.height}, {rect.x, rect.y}, {{0, top}, {1, bottom}}};
}

}  // namespace

double SparklingMonitorMark::height(double width) {
  return width * (screenHeight + gap + standHeight);
}

DisplayList SparklingMonitorMark::body(const Rect& rect) const {
  const double width = rect.width;
  const LinearGradient light =
      downwards({rect.x, rect.y, width, height(width)}, lightTop, lightBottom);
  const double line = frameThickness * width;
  const double screenY = rect.y + (standHeight + gap) * width;
  const RoundedRectangle screen{
      {rect.x + line / 2, screenY + line / 2, width - line, screenHeight * width - line},
      screenRadius * width - line / 2};
  const RoundedRectangle stand{
      {rect.x + (1 - standWidth) / 2 * width, rect.y, standWidth * width, standHeight * width},
      standHeight * width / 2};
  DisplayList list = {StrokedRectangle{screen, line, light}, FilledRectangle{stand, light}};
  for (const Sparkle& sparkle : sparkles) {
    const double size = sparkle.size * width;
    const Rect box{rect.x + sparkle.x * width - size / 2, screenY + sparkle.y * width - size / 2,
                   size, size};
    list.emplace_back(
        SparkleShape{sparklePinch}.path(box, downwards(box, sparkleTop, sparkleBottom)));
  }
  return list;
}

}  // namespace brivane
