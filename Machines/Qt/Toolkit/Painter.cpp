// Display lists count upwards from the lower left and Qt downwards from the upper left. Points are
// converted one by one; a mirrored painter would mirror the letters, too.
#include "Machines/Qt/Toolkit/Painter.h"

#include <QLinearGradient>
#include <QRadialGradient>
#include <algorithm>
#include <cmath>

#include "Machines/Qt/Toolkit/Colors.h"
#include "Machines/Qt/Toolkit/Symbols.h"
#include "Machines/Qt/Toolkit/TextLine.h"

namespace brivane {
namespace {

constexpr int spinnerSpokes = 8;

/// Qt keeps one colour per position, so the second of two at one position is moved on by a hair.
constexpr double hair = 1e-6;

QGradientStops stopsOf(const std::vector<GradientStop>& stops, Appearance appearance) {
  QGradientStops result;
  for (const GradientStop& stop : stops) {
    double position = stop.position;
    if (!result.isEmpty() && position <= result.back().first) position = result.back().first + hair;
    if (position > 1) {
      position = 1;
      if (!result.isEmpty() && result.back().first >= 1) result.back().first = 1 - hair;
    }
    result.append({position, resolvedColor(stop.paint, appearance)});
  }
  return result;
}

/// The part of the view that a primitive draws in; null for the primitives of the card itself, and
/// for spinners, which move by themselves.
const Rect* extentOf(const Primitive& primitive) {
  if (const auto* const fill = std::get_if<MaskedFill>(&primitive)) return &fill->area;
  if (const auto* const text = std::get_if<TextRun>(&primitive)) return &text->box;
  if (const auto* const symbol = std::get_if<SymbolImage>(&primitive)) return &symbol->box;
  return nullptr;
}

/// In Qt's coordinates, with room for antialiased edges.
QRect pixelsOf(const Rect& part, const QRect& view) {
  constexpr int room = 2;
  const QRectF box(part.x, view.height() - part.y - part.height, part.width, part.height);
  return box.toAlignedRect().adjusted(-room, -room, room, room) & view;
}

}  // namespace

QPainterPath continuousRectangle(const QRectF& rect, double cornerRadius) {
  const auto [start, handle] = cornerCurve({{0, 0, rect.width(), rect.height()}, cornerRadius});
  QPainterPath path;
  if (start <= 0) {
    path.addRect(rect);
    return path;
  }
  const double left = rect.left();
  const double top = rect.top();
  const double right = rect.right();
  const double bottom = rect.bottom();
  path.moveTo(left + start, top);
  path.lineTo(right - start, top);
  path.cubicTo(right - handle, top, right, top + handle, right, top + start);
  path.lineTo(right, bottom - start);
  path.cubicTo(right, bottom - handle, right - handle, bottom, right - start, bottom);
  path.lineTo(left + start, bottom);
  path.cubicTo(left + handle, bottom, left, bottom - handle, left, bottom - start);
  path.lineTo(left, top + start);
  path.cubicTo(left, top + handle, left + handle, top, left + start, top);
  path.closeSubpath();
  return path;
}

QtPainter::QtPainter(QPainter& qtPainter, const View& paintedView)
    : painter(qtPainter), view(paintedView) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.setPen(Qt::NoPen);
}

void QtPainter::fill(const FilledRectangle& rectangle) {
  painter.fillPath(outline(rectangle.shape), brush(rectangle.ink));
}

void QtPainter::stroke(const StrokedRectangle& rectangle) {
  const QPen pen(brush(rectangle.ink), rectangle.lineWidth);
  painter.strokePath(outline(rectangle.shape), pen);
}

/// Fills the mask's outline, because Qt's clips aren't antialiased. Intersects it with the area
/// only if need be: Qt makes intersections of straight lines.
void QtPainter::fillMasked(const MaskedFill& fill) {
  const QRectF area = downwards(fill.area);
  QPainterPath shape = outline(fill.mask);
  if (!area.contains(shape.boundingRect())) {
    QPainterPath inside;
    inside.addRect(area);
    shape = shape.intersected(inside);
  }
  painter.fillPath(shape, brush(fill.ink));
}

void QtPainter::fillPath(const FilledPath& path) {
  QPainterPath curve(downwards(path.start));
  for (const CurveSegment& segment : path.segments) {
    curve.cubicTo(downwards(segment.control1), downwards(segment.control2), downwards(segment.end));
  }
  curve.closeSubpath();
  painter.fillPath(curve, brush(path.ink));
}

void QtPainter::drawText(const TextRun& text) {
  painter.setPen(resolvedColor(text.paint, view.appearance));
  drawTextLine(painter, text, downwards(text.box));
  painter.setPen(Qt::NoPen);
}

void QtPainter::drawSymbol(const SymbolImage& symbol) {
  const QRectF box = downwards(symbol.box);
  const double side = std::min(box.width(), box.height());
  const QRectF square(box.center() - QPointF(side, side) / 2, QSizeF(side, side));
  painter.fillPath(symbolOutline(symbol.name, square),
                   resolvedColor(symbol.paint, view.appearance));
}

/// Spokes that fade behind the foremost, which moves on in whole steps.
void QtPainter::drawSpinner(const Spinner& spinner) {
  const QRectF box = downwards(spinner.box);
  const double side = std::min(box.width(), box.height());
  const int foremost = static_cast<int>(std::floor(view.spinnerTurns * spinnerSpokes));
  const QRectF spoke(-0.05 * side, -0.47 * side, 0.1 * side, 0.24 * side);
  painter.save();
  painter.translate(box.center());
  for (int index = 0; index < spinnerSpokes; ++index) {
    const int behind = ((foremost - index) % spinnerSpokes + spinnerSpokes) % spinnerSpokes;
    const double opacity = 0.9 - 0.75 * behind / (spinnerSpokes - 1);
    painter.save();
    painter.rotate(360.0 / spinnerSpokes * index);
    painter.setBrush(resolvedColor(SystemPaint{SystemColor::label, opacity}, view.appearance));
    painter.drawRoundedRect(spoke, spoke.width() / 2, spoke.width() / 2);
    painter.restore();
  }
  painter.restore();
}

QPointF QtPainter::downwards(Point point) const {
  return {point.x, view.height - point.y};
}

QRectF QtPainter::downwards(const Rect& rect) const {
  return {rect.x, view.height - rect.y - rect.height, rect.width, rect.height};
}

QPainterPath QtPainter::outline(const RoundedRectangle& shape) const {
  if (shape.frame.width <= 0 || shape.frame.height <= 0) return {};
  return continuousRectangle(downwards(shape.frame), shape.cornerRadius);
}

QBrush QtPainter::brush(const Ink& ink) const {
  if (const auto* const paint = std::get_if<Paint>(&ink)) {
    return resolvedColor(*paint, view.appearance);
  }
  if (const auto* const linear = std::get_if<LinearGradient>(&ink)) {
    QLinearGradient gradient(downwards(linear->start), downwards(linear->end));
    gradient.setStops(stopsOf(linear->stops, view.appearance));
    return gradient;
  }
  const auto& radial = std::get<RadialGradient>(ink);
  QRadialGradient gradient(downwards(radial.center), radial.radius);
  gradient.setStops(stopsOf(radial.stops, view.appearance));
  return gradient;
}

QImage renderedPicture(const DisplayList& list, const QtPainter::View& view, double scale) {
  QImage image(static_cast<int>(std::lround(view.width * scale)),
               static_cast<int>(std::lround(view.height * scale)),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.scale(scale, scale);
  QtPainter canvas(painter, view);
  draw(list, canvas);
  return image;
}

QRegion difference(const DisplayList& from, const DisplayList& to, const QRect& view) {
  if (from.size() != to.size()) return view;
  QRegion area;
  for (std::size_t index = 0; index < to.size(); ++index) {
    if (from[index] == to[index]) continue;
    for (const Primitive* const drawn : {&from[index], &to[index]}) {
      const Rect* const extent = extentOf(*drawn);
      if (extent == nullptr) return view;
      area += pixelsOf(*extent, view);
    }
  }
  return area;
}

}  // namespace brivane
