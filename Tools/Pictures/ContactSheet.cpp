#include "Tools/Pictures/ContactSheet.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Machines/Qt/Toolkit/TextLine.h"

namespace brivane {
namespace {

constexpr double scale = 2;
constexpr double margin = 24;
constexpr double gap = 20;
constexpr double captionHeight = 24;
constexpr double captionFontSize = 11;
constexpr double titleBarHeight = 30;
constexpr double titleFontSize = 13;
constexpr double windowRadius = 8;

QColor ground(Appearance appearance) {
  return appearance == Appearance::dark ? QColor(22, 32, 48) : QColor(198, 213, 230);
}

QColor captionInk(Appearance appearance) {
  return appearance == Appearance::dark ? QColor(170, 184, 204) : QColor(60, 76, 100);
}

QImage blank(QSizeF points) {
  QImage image((points * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  return image;
}

TextRun line(const std::string& text, double size, FontWeight weight, TextAlignment alignment) {
  TextRun run;
  run.text = text;
  run.size = size;
  run.weight = weight;
  run.alignment = alignment;
  return run;
}

}  // namespace

void ContactSheet::add(QImage picture, const std::string& caption) {
  columns.back().push_back({std::move(picture), QString::fromStdString(caption)});
}

QSizeF ContactSheet::size(const Cell& cell) {
  const QSizeF picture = cell.picture.deviceIndependentSize();
  return {picture.width(), picture.height() + (cell.caption.isEmpty() ? 0 : captionHeight)};
}

QSizeF ContactSheet::size(const Column& column) {
  QSizeF all(0, -gap);
  for (const Cell& cell : column) {
    all.setWidth(std::max(all.width(), size(cell).width()));
    all.setHeight(all.height() + gap + size(cell).height());
  }
  return all;
}

QImage ContactSheet::picture() const {
  if (columns.empty()) return whole.convertToFormat(QImage::Format_RGB888);
  QSizeF room(2 * margin - gap, 0);
  for (const Column& column : columns) {
    room.setWidth(room.width() + gap + size(column).width());
    room.setHeight(std::max(room.height(), size(column).height() + 2 * margin));
  }
  QImage image = blank(room);
  image.fill(ground(appearance));
  QPainter painter(&image);
  QPointF corner(margin, margin);
  for (const Column& column : columns) {
    for (const Cell& cell : column) {
      draw(painter, corner, cell);
      corner.ry() += size(cell).height() + gap;
    }
    corner = {corner.x() + size(column).width() + gap, margin};
  }
  painter.end();
  // Without alpha, the file is a quarter smaller.
  return image.convertToFormat(QImage::Format_RGB888);
}

void ContactSheet::draw(QPainter& painter, QPointF corner, const Cell& cell) const {
  painter.drawImage(corner, cell.picture);
  if (cell.caption.isEmpty()) return;
  const QSizeF picture = cell.picture.deviceIndependentSize();
  const QRectF box(corner.x() + 2, corner.y() + picture.height() + 4, picture.width() - 4,
                   captionHeight - 4);
  painter.setPen(captionInk(appearance));
  drawTextLine(painter,
               line(cell.caption.toStdString(), captionFontSize, FontWeight::regular,
                    TextAlignment::leading),
               box);
}

QImage withTitleBar(const QImage& content, const std::string& title, Appearance appearance) {
  const bool isDark = appearance == Appearance::dark;
  const QSizeF inner = content.deviceIndependentSize();
  QImage image = blank({inner.width(), inner.height() + titleBarHeight});
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF whole(QPointF(0, 0), image.deviceIndependentSize());
  QPainterPath outline;
  outline.addRoundedRect(whole, windowRadius, windowRadius);
  painter.setClipPath(outline);
  painter.fillRect(whole, isDark ? QColor(58, 58, 63) : QColor(222, 222, 226));
  painter.drawImage(QPointF(0, titleBarHeight), content);
  painter.setPen(isDark ? QColor(236, 236, 238) : QColor(40, 40, 44));
  const QRectF bar(0, 0, inner.width(), titleBarHeight);
  drawTextLine(painter, line(title, titleFontSize, FontWeight::semibold, TextAlignment::center),
               bar);
  const QPointF middle(inner.width() - titleBarHeight / 2, titleBarHeight / 2);
  painter.setPen(QPen(painter.pen().color(), 1.5));
  constexpr double reach = 4;
  painter.drawLine(middle + QPointF(-reach, -reach), middle + QPointF(reach, reach));
  painter.drawLine(middle + QPointF(-reach, reach), middle + QPointF(reach, -reach));
  return image;
}

}  // namespace brivane
