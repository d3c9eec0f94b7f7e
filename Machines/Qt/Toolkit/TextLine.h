#pragma once

#include <QFont>
#include <QPainter>
#include <QRectF>

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// The system font in that size and weight.
QFont systemFont(double size, FontWeight weight);

/// The text of the run in the box, with the painter's pen.
void drawTextLine(QPainter& painter, const TextRun& run, const QRectF& box);

}  // namespace brivane
