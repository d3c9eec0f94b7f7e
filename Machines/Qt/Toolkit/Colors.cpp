#include "Machines/Qt/Toolkit/Colors.h"

#include <QApplication>
#include <QPalette>

namespace brivane {
namespace {

/// Black on light, white on dark.
QColor ink(Appearance appearance, double lightOpacity, double darkOpacity) {
  return appearance == Appearance::dark
             ? QColor::fromRgbF(1, 1, 1, static_cast<float>(darkOpacity))
             : QColor::fromRgbF(0, 0, 0, static_cast<float>(lightOpacity));
}

/// Tertiary text has a contrast of 4.5 to 1 on a menu, which small letters need.
QColor systemColor(SystemColor color, Appearance appearance) {
  switch (color) {
    case SystemColor::label:
      return ink(appearance, 0.88, 0.92);
    case SystemColor::secondaryLabel:
      return ink(appearance, 0.65, 0.7);
    case SystemColor::tertiaryLabel:
      return ink(appearance, 0.55, 0.55);
    case SystemColor::accent:
      return QApplication::palette().color(QPalette::Highlight);
    case SystemColor::separator:
      return ink(appearance, 0.22, 0.26);
    case SystemColor::controlBackground:
      return appearance == Appearance::dark ? QColor(30, 30, 33) : QColor(255, 255, 255);
  }
  return {};
}

struct Resolving {
  Appearance appearance;

  QColor operator()(const Color& color) const {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
  }
  QColor operator()(const SystemPaint& paint) const {
    QColor color = systemColor(paint.color, appearance);
    color.setAlphaF(static_cast<float>(color.alphaF() * paint.opacity));
    return color;
  }
};

}  // namespace

QColor resolvedColor(const Paint& paint, Appearance appearance) {
  return std::visit(Resolving{appearance}, paint);
}

}  // namespace brivane
