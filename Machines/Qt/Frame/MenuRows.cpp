#include "Machines/Qt/Frame/MenuRows.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <QStyle>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cmath>

#include "Machines/Qt/Toolkit/Colors.h"

namespace brivane {
namespace {

constexpr int leftMargin = 28;
constexpr int rightMargin = 18;
constexpr int verticalMargin = 4;
constexpr int longestTextWidth = 340;
constexpr int sliderWidth = 220;

// Assistive technology reads out a slider's steps, so a step is a unit.
constexpr int unitsPerKey = 1;
constexpr int unitsPerPage = 10;

int steps(double value) {
  return static_cast<int>(std::lround(value));
}

SystemColor colorOf(MenuTone tone) {
  switch (tone) {
    case MenuTone::label:
      return SystemColor::label;
    case MenuTone::secondaryLabel:
      return SystemColor::secondaryLabel;
    case MenuTone::tertiaryLabel:
      return SystemColor::tertiaryLabel;
  }
  return SystemColor::label;
}

/// A groove filled up to a round handle, in the program's own colours: Qt's are hard to see on a
/// dark menu. The keys up and down are the menu's. A click beside the handle moves it there at
/// once.
class RowSlider : public QSlider {
 public:
  RowSlider(QWidget* parent, QtApplication& qtApplication)
      : QSlider(Qt::Horizontal, parent), application(qtApplication) {}

  QSize sizeHint() const override { return {sliderWidth, 22}; }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
      event->ignore();
    } else {
      QSlider::keyPressEvent(event);
    }
  }

  void mousePressEvent(QMouseEvent* event) override {
    const QRect handle = handleBox();
    const int x = event->position().toPoint().x();
    if (event->button() == Qt::LeftButton && (x < handle.left() || x > handle.right())) {
      setValue(QStyle::sliderValueFromPosition(minimum(), maximum(), x - handle.width() / 2,
                                               width() - handle.width()));
    }
    QSlider::mousePressEvent(event);
  }

  void paintEvent(QPaintEvent*) override {
    const Appearance appearance = application.effectiveAppearance();
    const QPointF middle = QRectF(handleBox()).center();
    const QRectF groove(2, middle.y() - grooveHeight / 2, width() - 4, grooveHeight);
    QRectF filled = groove;
    filled.setRight(middle.x());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(resolvedColor(SystemPaint{SystemColor::separator}, appearance));
    painter.drawRoundedRect(groove, grooveHeight / 2, grooveHeight / 2);
    const QColor accent = resolvedColor(SystemPaint{SystemColor::accent}, appearance);
    painter.setBrush(accent);
    painter.drawRoundedRect(filled, grooveHeight / 2, grooveHeight / 2);
    painter.setBrush(appearance == Appearance::dark ? QColor(226, 226, 230) : QColor(Qt::white));
    painter.setPen(hasFocus() ? QPen(accent, 2) : QPen(QColor(0, 0, 0, 90), 1));
    painter.drawEllipse(middle, handleRadius, handleRadius);
  }

 private:
  QRect handleBox() const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
  }

  static constexpr double grooveHeight = 4;
  static constexpr double handleRadius = 7;
  QtApplication& application;
};

}  // namespace

MenuTextRow::MenuTextRow(const MenuText& rowText, QtApplication& qtApplication)
    : application(qtApplication), tone(rowText.tone) {
  setTitle(rowText.title);
}

void MenuTextRow::setTitle(const std::string& newTitle) {
  title = QString::fromStdString(newTitle);
  setAccessibleName(title);
  const bool isCut = fontMetrics().horizontalAdvance(title) > longestTextWidth;
  setToolTip(isCut ? title : QString());
  updateGeometry();
  update();
}

QSize MenuTextRow::sizeHint() const {
  const int text = std::min(fontMetrics().horizontalAdvance(title) + 1, longestTextWidth);
  return {leftMargin + text + rightMargin, fontMetrics().height() + 2 * verticalMargin};
}

void MenuTextRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(resolvedColor(SystemPaint{colorOf(tone)}, application.effectiveAppearance()));
  const QRect box = rect().adjusted(leftMargin, 0, -rightMargin, 0);
  const QString shown = fontMetrics().elidedText(title, Qt::ElideMiddle, box.width());
  painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

QSize MenuSeparatorRow::sizeHint() const {
  // A menu omits rows without width.
  return {1, 9};
}

void MenuSeparatorRow::paintEvent(QPaintEvent*) {
  const QRect line(8, height() / 2, width() - 16, 1);
  QPainter(this).fillRect(line, resolvedColor(SystemPaint{SystemColor::separator, 0.8},
                                              application.effectiveAppearance()));
}

MenuSliderRow::MenuSliderRow(const MenuSlider& slider, QtApplication& application,
                             std::function<void(double)> moved, std::function<void()> released)
    : control(new RowSlider(this, application)) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(leftMargin, 0, rightMargin, verticalMargin);
  layout->addWidget(control);
  control->setMinimumWidth(sliderWidth);
  control->setFocusPolicy(Qt::StrongFocus);
  control->setAccessibleName(QString::fromStdString(slider.accessibilityLabel));
  control->setSingleStep(unitsPerKey);
  control->setPageStep(unitsPerPage);
  control->setRange(steps(slider.minimum), steps(slider.maximum));
  setFocusPolicy(Qt::StrongFocus);
  setFocusProxy(control);
  setValue(slider.value);
  connect(control, &QSlider::valueChanged, this, [this, moved = std::move(moved)](int value) {
    if (!isFollowing) moved(value);
  });
  connect(control, &QSlider::sliderReleased, this, std::move(released));
}

void MenuSliderRow::setValue(double newValue) {
  isFollowing = true;
  control->setValue(steps(newValue));
  isFollowing = false;
}

}  // namespace brivane
