// A first responder has Qt's focus, too. A view that resigns by itself keeps the focus, so that Tab
// goes on from there; a view that loses the focus resigns.
#include "Machines/Qt/Frame/CustomViewWidget.h"

#include <QAccessibleWidget>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <QPointer>
#include <utility>

#include "Machines/Qt/Toolkit/Colors.h"
#include "Machines/Qt/Toolkit/Painter.h"
#include "Machines/Qt/Toolkit/VirtualKeys.h"

namespace brivane {
namespace {

bool isClick(int key) {
  return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// To assistive technology a view is a button with a name, a description and a press action.
class AccessibleView : public QAccessibleWidget {
 public:
  explicit AccessibleView(CustomViewWidget& describedView)
      : QAccessibleWidget(&describedView, QAccessible::Button), view(describedView) {}

  QStringList actionNames() const override {
    return QStringList{pressAction()} + QAccessibleWidget::actionNames();
  }

  void doAction(const QString& name) override {
    if (name == pressAction()) {
      // A click would activate the window, too.
      view.activateWindow();
      view.click();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  CustomViewWidget& view;
};

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
  auto* const view = dynamic_cast<CustomViewWidget*>(object);
  return view != nullptr ? new AccessibleView(*view) : nullptr;
}

}  // namespace

CustomViewWidget::CustomViewWidget(const WindowView& placedView, QtApplication& qtApplication,
                                   QWidget* parent)
    : QWidget(parent), view(placedView.view), application(qtApplication) {
  // Qt ignores a factory that is installed already.
  QAccessible::installFactory(makeAccessible);
  setAccessibleName(QString::fromStdString(placedView.accessibilityLabel));
  setAccessibleDescription(QString::fromStdString(view->accessibilityText()));
  // A click focuses the view only if the view becomes first responder.
  if (view->acceptsFirstResponder()) setFocusPolicy(Qt::TabFocus);
  view->setHost(this);
}

void CustomViewWidget::click() {
  if (view != nullptr) view->mouseDown();
}

void CustomViewWidget::detach() {
  if (view != nullptr) std::exchange(view, nullptr)->setHost(nullptr);
}

void CustomViewWidget::setNeedsDisplay() {
  if (view != nullptr) {
    setAccessibleDescription(QString::fromStdString(view->accessibilityText()));
  }
  update();
}

void CustomViewWidget::makeFirstResponder() {
  if (isFirstResponder || view == nullptr || !view->acceptsFirstResponder()) return;
  setFocus(Qt::OtherFocusReason);
  // In an inactive window Qt sends no event for the lost focus.
  for (QObject* const sibling : parent()->children()) {
    auto* const other = dynamic_cast<CustomViewWidget*>(sibling);
    if (other != nullptr) other->resignFirstResponder();
  }
  isFirstResponder = true;
}

void CustomViewWidget::resignFirstResponder() {
  if (!isFirstResponder || view == nullptr || !view->resignFirstResponder()) return;
  isFirstResponder = false;
}

void CustomViewWidget::beep() {
  application.beep();
}

/// A first responder gets Tab and the window's shortcuts as ordinary keys.
bool CustomViewWidget::event(QEvent* event) {
  if (isFirstResponder && event->type() == QEvent::ShortcutOverride) {
    event->accept();
    return true;
  }
  if (isFirstResponder && event->type() == QEvent::KeyPress) {
    keyPressEvent(static_cast<QKeyEvent*>(event));
    if (event->isAccepted()) return true;
  }
  return QWidget::event(event);
}

void CustomViewWidget::paintEvent(QPaintEvent*) {
  if (view == nullptr) return;
  QPainter painter(this);
  const QtPainter::View size{.width = static_cast<double>(width()),
                             .height = static_cast<double>(height()),
                             .appearance = application.effectiveAppearance()};
  QtPainter canvas(painter, size);
  draw(view->draw(), canvas);
  if (!hasFocus() || isFirstResponder) return;
  QColor ring = resolvedColor(SystemPaint{SystemColor::accent, 0.6}, size.appearance);
  painter.setPen(QPen(ring, 2));
  painter.drawPath(continuousRectangle(QRectF(rect()).adjusted(1, 1, -1, -1), 6));
}

void CustomViewWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) click();
}

void CustomViewWidget::keyPressEvent(QKeyEvent* event) {
  event->accept();
  const auto press = keyPressOf(*event);
  if (isFirstResponder) {
    if (!press || view == nullptr) return;
    const QPointer<CustomViewWidget> self(this);
    const bool isTaken = view->keyDown(*press);
    if (self && !isTaken) event->ignore();
  } else if (isClick(event->key())) {
    click();
  } else {
    event->ignore();
  }
}

void CustomViewWidget::focusInEvent(QFocusEvent*) {
  update();
}

void CustomViewWidget::focusOutEvent(QFocusEvent* event) {
  update();
  if (event->reason() != Qt::PopupFocusReason) resignFirstResponder();
}

}  // namespace brivane
