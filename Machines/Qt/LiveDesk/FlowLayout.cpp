#include "Machines/Qt/LiveDesk/FlowLayout.h"

#include <algorithm>

namespace brivane {

FlowLayout::FlowLayout(QWidget* parent, int gapPoints) : QLayout(parent), gap(gapPoints) {
  setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() {
  qDeleteAll(items);
}

QLayoutItem* FlowLayout::takeAt(int index) {
  return index >= 0 && index < items.size() ? items.takeAt(index) : nullptr;
}

QSize FlowLayout::sizeHint() const {
  QSize all(0, 0);
  for (const QLayoutItem* const item : items) {
    if (item->isEmpty()) continue;
    const QSize one = item->sizeHint();
    all = {all.width() + one.width() + (all.width() > 0 ? gap : 0),
           std::max(all.height(), one.height())};
  }
  return all.grownBy(contentsMargins());
}

QSize FlowLayout::minimumSize() const {
  QSize largest(0, 0);
  for (const QLayoutItem* const item : items) largest = largest.expandedTo(item->minimumSize());
  return largest.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& box) {
  QLayout::setGeometry(box);
  arrange(box, true);
}

/// Returns the height of all rows.
int FlowLayout::arrange(const QRect& box, bool isPlacing) const {
  const QRect inner = box.marginsRemoved(contentsMargins());
  int x = inner.x();
  int y = inner.y();
  int rowHeight = 0;
  for (QLayoutItem* const item : items) {
    if (item->isEmpty()) continue;
    QSize size = item->sizeHint();
    if (x > inner.x() && x + size.width() > inner.x() + inner.width()) {
      x = inner.x();
      y += rowHeight + gap;
      rowHeight = 0;
    }
    size.setWidth(std::min(size.width(), inner.width()));
    if (isPlacing) item->setGeometry({{x, y}, size});
    x += size.width() + gap;
    rowHeight = std::max(rowHeight, size.height());
  }
  return y + rowHeight - inner.y() + contentsMargins().top() + contentsMargins().bottom();
}

}  // namespace brivane
