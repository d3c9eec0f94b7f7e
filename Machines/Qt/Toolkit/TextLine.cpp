// In a font with digits of different widths a counting number would jitter. Where digits are to be
// monospaced, each gets the width of the widest.
#include "Machines/Qt/Toolkit/TextLine.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>

namespace brivane {
namespace {

QFont::Weight qtWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return QFont::Normal;
    case FontWeight::medium:
      return QFont::Medium;
    case FontWeight::semibold:
      return QFont::DemiBold;
  }
  return QFont::Normal;
}

/// 0 when the font's own digits are monospaced.
double digitRoom(const QFontMetricsF& metrics) {
  double narrowest = metrics.horizontalAdvance('0');
  double widest = narrowest;
  for (char digit = '1'; digit <= '9'; ++digit) {
    const double advance = metrics.horizontalAdvance(QLatin1Char(digit));
    narrowest = std::min(narrowest, advance);
    widest = std::max(widest, advance);
  }
  return widest - narrowest < 0.01 ? 0 : widest;
}

/// Single digits, and the stretches between them.
QStringList pieces(const QString& text) {
  QStringList result;
  bool wasDigit = true;
  for (const QChar character : text) {
    if (character.isDigit() || wasDigit) {
      result.append(character);
    } else {
      result.back().append(character);
    }
    wasDigit = character.isDigit();
  }
  return result;
}

double roomOf(const QString& piece, const QFontMetricsF& metrics, double room) {
  return piece.front().isDigit() ? room : metrics.horizontalAdvance(piece);
}

double lineWidth(const QString& text, const QFontMetricsF& metrics, double room) {
  if (room == 0) return metrics.horizontalAdvance(text);
  double width = 0;
  for (const QString& piece : pieces(text)) width += roomOf(piece, metrics, room);
  return width;
}

/// Qt elides the text by the digits' own widths, so the limit is lowered until the text fits.
QString shortened(const QString& text, const QFontMetricsF& metrics, double room, double width) {
  QString shown = text;
  for (double limit = width; limit > 0 && lineWidth(shown, metrics, room) > width; --limit) {
    shown = metrics.elidedText(text, Qt::ElideRight, limit);
  }
  return shown;
}

double leftEdge(TextAlignment alignment, const QRectF& box, double width) {
  switch (alignment) {
    case TextAlignment::leading:
      return box.left();
    case TextAlignment::center:
      return box.center().x() - width / 2;
    case TextAlignment::trailing:
      return box.right() - width;
  }
  return box.left();
}

void drawWithRoom(QPainter& painter, QPointF origin, const QString& text,
                  const QFontMetricsF& metrics, double room) {
  for (const QString& piece : pieces(text)) {
    const double width = roomOf(piece, metrics, room);
    const double advance = metrics.horizontalAdvance(piece);
    painter.drawText(origin + QPointF((width - advance) / 2, 0), piece);
    origin.rx() += width;
  }
}

}  // namespace

QFont systemFont(double size, FontWeight weight) {
  QFont font = QGuiApplication::font();
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
  font.setWeight(qtWeight(weight));
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

void drawTextLine(QPainter& painter, const TextRun& run, const QRectF& box) {
  const QFont font = systemFont(run.size, run.weight);
  const QFontMetricsF metrics(font);
  const double room = run.monospacedDigits ? digitRoom(metrics) : 0;
  const QString text = shortened(QString::fromStdString(run.text), metrics, room, box.width());
  painter.setFont(font);
  const double baseline = box.center().y() + metrics.capHeight() / 2;
  const QPointF origin(leftEdge(run.alignment, box, lineWidth(text, metrics, room)), baseline);
  if (room == 0) {
    painter.drawText(origin, text);
  } else {
    drawWithRoom(painter, origin, text, metrics, room);
  }
}

}  // namespace brivane
