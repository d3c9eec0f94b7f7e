#include "Machines/Qt/Symbols.h"

#include <QPointF>
#include <QTransform>
#include <array>

namespace brivane {
namespace {

constexpr QPointF center{0.5, 0.5};

QPainterPath disc(QPointF middle, double radius) {
  QPainterPath path;
  path.addEllipse(middle, radius, radius);
  return path;
}

/// Eight bars with round ends around the middle, from the one distance to the other.
QPainterPath rays(double from, double to, double width) {
  QPainterPath ray;
  ray.addRoundedRect(-width / 2, from, width, to - from, width / 2, width / 2);
  QPainterPath all;
  for (int eighth = 0; eighth < 8; ++eighth) {
    all.addPath(QTransform().translate(center.x(), center.y()).rotate(45.0 * eighth).map(ray));
  }
  return all;
}

QPainterPath sunMax() {
  QPainterPath path = disc(center, 0.215);
  path.addPath(rays(0.31, 0.47, 0.075));
  return path;
}

/// Its rays have shrunk to dots, its disc to a ring.
QPainterPath sunMin() {
  QPainterPath path = disc(center, 0.215).subtracted(disc(center, 0.145));
  path.addPath(rays(0.31, 0.395, 0.085));
  return path;
}

QPainterPath moon() {
  return disc({0.48, 0.52}, 0.4).subtracted(disc({0.67, 0.33}, 0.335));
}

/// Four points, with sides that bow inwards.
QPainterPath star(QPointF middle, double reach) {
  constexpr double waist = 0.16;
  const std::array<QPointF, 4> points = {{{reach, 0}, {0, reach}, {-reach, 0}, {0, -reach}}};
  QPainterPath path(middle + points[3]);
  QPointF last = points[3];
  for (const QPointF& point : points) {
    path.cubicTo(middle + last * waist, middle + point * waist, middle + point);
    last = point;
  }
  path.closeSubpath();
  return path;
}

QPainterPath sparkles() {
  QPainterPath path = star({0.4, 0.57}, 0.4);
  path.addPath(star({0.79, 0.24}, 0.21));
  path.addPath(star({0.83, 0.8}, 0.15));
  return path;
}

}  // namespace

QPainterPath symbolOutline(const std::string& name) {
  if (name == "moon.fill") return moon();
  if (name == "sun.min") return sunMin();
  if (name == "sun.max.fill") return sunMax();
  if (name == "sparkles") return sparkles();
  return {};
}

}  // namespace brivane
