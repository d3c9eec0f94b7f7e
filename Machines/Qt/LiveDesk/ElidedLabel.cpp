#include "Machines/Qt/LiveDesk/ElidedLabel.h"

#include <QPainter>

namespace brivane {

ElidedLabel::ElidedLabel(QWidget* parent) : QWidget(parent) {
  // Clicks and drags are for the window.
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ElidedLabel::setText(const QString& newText) {
  if (ownText == newText) return;
  ownText = newText;
  setAccessibleName(newText);
  updateGeometry();
  update();
}

QSize ElidedLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(ownText) + 2, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                   fontMetrics().elidedText(ownText, Qt::ElideRight, width()));
}

}  // namespace brivane
