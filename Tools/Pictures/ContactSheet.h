#pragma once

#include <QImage>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneUI/Appearance.h"

namespace brivane {

/// Pictures with captions, in columns on a plain background. Main thread.
class ContactSheet {
 public:
  explicit ContactSheet(Appearance sheetAppearance) : appearance(sheetAppearance) {}
  /// A single picture without background and caption.
  explicit ContactSheet(QImage wholePicture) : whole(std::move(wholePicture)) {}

  void beginColumn() { columns.emplace_back(); }
  /// Adds to the column's bottom; an empty caption takes no line.
  void add(QImage picture, const std::string& caption);

  /// Needs a Qt application.
  QImage picture() const;

 private:
  struct Cell {
    QImage picture;
    QString caption;
  };
  using Column = std::vector<Cell>;

  static QSizeF size(const Cell& cell);
  static QSizeF size(const Column& column);
  void draw(QPainter& painter, QPointF corner, const Cell& cell) const;

  Appearance appearance = Appearance::light;
  QImage whole;
  std::vector<Column> columns;
};

/// A window's content with a desktop's title bar. Needs a Qt application.
QImage withTitleBar(const QImage& content, const std::string& title, Appearance appearance);

}  // namespace brivane
