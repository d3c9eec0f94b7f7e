#include "Machines/Qt/Toolkit/Symbols.h"

#include <QPointF>
#include <QTransform>
#include <array>

namespace brivane {
namespace {

constexpr QPointF center{0.5, 0.5};

/// Qt makes small outlines of straight lines; at this size curves stay round.
constexpr double drawingSide = 256;

QPainterPath disc(QPointF middle, double radius) {
  QPainterPath path;
  path.addEllipse(middle * drawingSide, radius * drawingSide, radius * drawingSide);
  return path;
}

/// Eight bars with round ends around the middle, from the one distance to the other.
QPainterPath rays(double from, double to, double width) {
  QPainterPath ray;
  ray.addRoundedRect(-width / 2, from, width, to - from, width / 2, width / 2);
  QPainterPath all;
  const QTransform enlarging = QTransform::fromScale(drawingSide, drawingSide);
  for (int eighth = 0; eighth < 8; ++eighth) {
    const QTransform turning =
        QTransform().translate(center.x(), center.y()).rotate(45.0 * eighth) * enlarging;
    all.addPath(turning.map(ray));
  }
  return all;
}

QPainterPath sunMax() {
  QPainterPath path = disc(center, 0.215);
  path.addPath(rays(0.31, 0.47, 0.075));
  return path;
}

/// Short rays around a ring.
QPainterPath sunMin() {
  QPainterPath path = disc(center, 0.22).subtracted(disc(center, 0.148));
  path.addPath(rays(0.315, 0.42, 0.085));
  return path;
}

QPainterPath moon() {
  return disc({0.48, 0.52}, 0.42).subtracted(disc({0.665, 0.335}, 0.34));
}

/// Four points, with sides that bow inwards.
QPainterPath star(QPointF unitMiddle, double unitReach) {
  const QPointF middle = unitMiddle * drawingSide;
  const double reach = unitReach * drawingSide;
  constexpr double waist = 0.22;
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

/// The outlines are computed once: cutting the moon out of a disc takes longer than drawing a whole
/// card.
struct Symbols {
  QPainterPath moonFill = moon();
  QPainterPath sunMinimum = sunMin();
  QPainterPath sunMaximumFill = sunMax();
  QPainterPath sparkle = sparkles();
};

}  // namespace

QPainterPath symbolOutline(const std::string& name, const QRectF& square) {
  QTransform placing = QTransform::fromTranslate(square.x(), square.y());
  placing.scale(square.width() / drawingSide, square.height() / drawingSide);
  static const Symbols symbols;
  if (name == "moon.fill") return placing.map(symbols.moonFill);
  if (name == "sun.min") return placing.map(symbols.sunMinimum);
  if (name == "sun.max.fill") return placing.map(symbols.sunMaximumFill);
  if (name == "sparkles") return placing.map(symbols.sparkle);
  return {};
}

}  // namespace brivane
