#pragma once

#include <QImage>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneUI/Appearance.h"

namespace brivane {

/// Pictures with a line below each that says what they show, in columns on a plain ground. Main
/// thread.
class ContactSheet {
 public:
  explicit ContactSheet(Appearance itsAppearance) : appearance(itsAppearance) {}
  /// A picture that needs no ground and no caption.
  explicit ContactSheet(QImage wholePicture) : whole(std::move(wholePicture)) {}

  void beginColumn() { columns.emplace_back(); }
  /// Below what the column holds already; without a caption there is no line.
  void add(QImage picture, const std::string& caption);

  /// While there is a Qt application.
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

/// A window's content with the title bar that a desktop would give it. While there is a Qt
/// application.
QImage withTitleBar(const QImage& content, const std::string& title, Appearance appearance);

}  // namespace brivane
