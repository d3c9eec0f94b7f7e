#include "Machines/Qt/MenuRows.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Machines/Qt/Colors.h"

namespace brivane {
namespace {

constexpr int leftMargin = 28;
constexpr int rightMargin = 18;
constexpr int verticalMargin = 4;
constexpr int longestTextWidth = 340;
constexpr int sliderWidth = 220;

/// Qt's sliders count in whole steps; this many make a unit.
constexpr double stepsPerUnit = 10;
constexpr int unitsPerKey = 1;
constexpr int unitsPerPage = 10;

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

/// Up and down belong to the menu; left and right move the slider.
class RowSlider : public QSlider {
 public:
  explicit RowSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
      event->ignore();
    } else {
      QSlider::keyPressEvent(event);
    }
  }
};

}  // namespace

MenuTextRow::MenuTextRow(const MenuText& itsText, QtApplication& itsApplication)
    : application(itsApplication), tone(itsText.tone) {
  setTitle(itsText.title);
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

MenuSliderRow::MenuSliderRow(const MenuSlider& slider, std::function<void(double)> moved)
    : minimum(slider.minimum), exactValue(slider.value), control(new RowSlider(this)) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(leftMargin, 0, rightMargin, verticalMargin);
  layout->addWidget(control);
  control->setMinimumWidth(sliderWidth);
  control->setFocusPolicy(Qt::StrongFocus);
  control->setAccessibleName(QString::fromStdString(slider.accessibilityLabel));
  control->setSingleStep(static_cast<int>(unitsPerKey * stepsPerUnit));
  control->setPageStep(static_cast<int>(unitsPerPage * stepsPerUnit));
  control->setRange(0, static_cast<int>(std::lround((slider.maximum - minimum) * stepsPerUnit)));
  setFocusPolicy(Qt::StrongFocus);
  setFocusProxy(control);
  setValue(slider.value);
  connect(control, &QSlider::valueChanged, this, [this, moved = std::move(moved)](int steps) {
    if (isFollowing) return;
    exactValue = minimum + steps / stepsPerUnit;
    moved(exactValue);
  });
}

void MenuSliderRow::setValue(double newValue) {
  exactValue = newValue;
  isFollowing = true;
  control->setValue(static_cast<int>(std::lround((newValue - minimum) * stepsPerUnit)));
  isFollowing = false;
}

}  // namespace brivane
