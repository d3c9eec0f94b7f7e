#pragma once

#include <QBrush>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>

#include "BrivaneUI/Appearance.h"
#include "BrivaneUI/Canvas.h"

namespace brivane {

/// Draws primitives with a QPainter whose origin is the upper left of a view. Main thread.
class QtPainter : public Canvas {
 public:
  struct View {
    double width = 0;
    double height = 0;
    Appearance appearance = Appearance::light;
    /// The angle of spinners, in turns.
    double spinnerTurns = 0;
  };

  /// The painter must be active as long as this exists.
  QtPainter(QPainter& qtPainter, const View& paintedView);

  void fill(const FilledRectangle& rectangle) override;
  void stroke(const StrokedRectangle& rectangle) override;
  void fillMasked(const MaskedFill& fill) override;
  void fillPath(const FilledPath& path) override;
  void drawText(const TextRun& text) override;
  void drawSymbol(const SymbolImage& symbol) override;
  void drawSpinner(const Spinner& spinner) override;

 private:
  QPointF downwards(Point point) const;
  QRectF downwards(const Rect& rect) const;
  QPainterPath outline(const RoundedRectangle& shape) const;
  QBrush brush(const Ink& ink) const;

  QPainter& painter;
  const View view;
};

/// The path of a rectangle with continuous corners.
QPainterPath continuousRectangle(const QRectF& rect, double cornerRadius);

/// The list as a picture of the view on a transparent background, with `scale` pixels per point.
QImage renderedPicture(const DisplayList& list, const QtPainter::View& view, double scale);

/// The smallest known region outside which the pictures are equal.
QRegion difference(const DisplayList& from, const DisplayList& to, const QRect& view);

}  // namespace brivane
