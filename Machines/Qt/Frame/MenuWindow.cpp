#include "Machines/Qt/Frame/MenuWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QSlider>
#include <QStyle>
#include <QWidgetAction>
#include <algorithm>
#include <utility>

#include "Machines/Qt/Frame/AccessibleMenu.h"
#include "Machines/Qt/Toolkit/Colors.h"
#include "Machines/Qt/Toolkit/VirtualKeys.h"

namespace brivane {
namespace {

/// Above the first and below the last row.
constexpr int verticalPadding = 4;

}  // namespace

MenuWindow::MenuWindow(QtApplication& qtApplication, KeyHandler keyHandler)
    : application(qtApplication), handleKey(std::move(keyHandler)) {
  makeMenusAccessible();
  setAccessibleName("Brivane");
  setContentsMargins(0, verticalPadding, 0, verticalPadding);
}

void MenuWindow::open(const QPoint& place) {
  popup(place);
  placedSize = size();
}

void MenuWindow::replaceRows(const QList<QAction*>& rows) {
  const auto selected = actions().indexOf(activeAction());
  const bool hadFocus = isFocusInRow();
  if (isSliderHeld()) ignoresMouse = true;
  isReplacing = true;
  for (QAction* const old : actions()) {
    removeAction(old);
    old->deleteLater();
  }
  addActions(rows);
  isReplacing = false;
  if (!isVisible()) return;
  select(rows.value(selected), hadFocus);
  fitToRows();
}

/// The menu may have opened over a panel, so it moves only after a change of its size.
void MenuWindow::fitToRows() {
  if (!isVisible() || screen() == nullptr) return;
  resize(sizeHint());
  if (std::exchange(placedSize, size()) == size()) return;
  const QRect room = screen()->availableGeometry();
  QRect box = geometry();
  box.moveBottom(std::min(box.bottom(), room.bottom()));
  box.moveTop(std::max(box.top(), room.top()));
  box.moveRight(std::min(box.right(), room.right()));
  setGeometry(box);
}

bool MenuWindow::isSliderHeld() const {
  return std::ranges::any_of(findChildren<QSlider*>(), &QSlider::isSliderDown);
}

bool MenuWindow::isFocusInRow() const {
  const QWidget* const focused = QApplication::focusWidget();
  return focused != nullptr && isAncestorOf(focused);
}

void MenuWindow::select(QAction* row, bool givesFocus) {
  if (row == nullptr || !row->isEnabled()) return;
  setActiveAction(row);
  auto* const widgetRow = qobject_cast<QWidgetAction*>(row);
  if (givesFocus && widgetRow != nullptr) widgetRow->defaultWidget()->setFocus(Qt::TabFocusReason);
}

/// Qt adapts the size to each row that is removed or added while the menu is open, and closes an
/// empty menu; so the size stays until all rows are replaced.
QSize MenuWindow::sizeHint() const {
  return isReplacing ? size() : QMenu::sizeHint();
}

/// A modifier belongs to a hotkey; in other menus Alt closes the menu.
void MenuWindow::keyPressEvent(QKeyEvent* event) {
  if (isModifier(event->key()) || handleKey(event->text())) return;
  QMenu::keyPressEvent(event);
}

void MenuWindow::mousePressEvent(QMouseEvent* event) {
  ignoresMouse = false;
  QMenu::mousePressEvent(event);
}

void MenuWindow::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) ignoresMouse = false;
  if (!ignoresMouse) QMenu::mouseMoveEvent(event);
}

void MenuWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (!std::exchange(ignoresMouse, false)) QMenu::mouseReleaseEvent(event);
}

/// Fusion's edge is darker than the menu, and invisible on a dark desktop.
void MenuWindow::paintEvent(QPaintEvent* event) {
  QMenu::paintEvent(event);
  if (style()->name() != "fusion" || application.effectiveAppearance() != Appearance::dark) return;
  QPainter painter(this);
  painter.setPen(resolvedColor(SystemPaint{SystemColor::separator}, Appearance::dark));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace brivane
