#include "Machines/Qt/Toolkit/ScreenMap.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>

namespace brivane {
namespace {

Rect around(const std::vector<Screen>& screens) {
  Rect all = screens.front().frame;
  for (const Screen& screen : screens) {
    const Rect& frame = screen.frame;
    const double right = std::max(all.x + all.width, frame.x + frame.width);
    const double top = std::max(all.y + all.height, frame.y + frame.height);
    all.x = std::min(all.x, frame.x);
    all.y = std::min(all.y, frame.y);
    all.width = right - all.x;
    all.height = top - all.y;
  }
  return all;
}

int pixels(double length) {
  return static_cast<int>(std::lround(length));
}

/// In Qt's coordinates a screen's origin is in pixels and its size in points.
QRect pixels(const QScreen& screen) {
  const QRect points = screen.geometry();
  return {points.topLeft(), (QSizeF(points.size()) * screen.devicePixelRatio()).toSize()};
}

QRect desktopPixels() {
  QRect all;
  for (const QScreen* const screen : QGuiApplication::screens()) all |= pixels(*screen);
  return all;
}

QRect inPoints(const QRect& box) {
  const QScreen* found = QGuiApplication::primaryScreen();
  for (const QScreen* const screen : QGuiApplication::screens()) {
    if (pixels(*screen).contains(box.center())) found = screen;
  }
  if (found == nullptr) return box;
  const QPoint origin = found->geometry().topLeft();
  const double scale = found->devicePixelRatio();
  const QPointF corner = QPointF(box.topLeft() - origin) / scale;
  return {origin + corner.toPoint(), (QSizeF(box.size()) / scale).toSize()};
}

}  // namespace

QRect placeOnDesktop(const Rect& frame, const std::vector<Screen>& screens, const QRect& desktop,
                     double scale) {
  Rect all{0, 0, static_cast<double>(desktop.width()), static_cast<double>(desktop.height())};
  if (!screens.empty()) all = around(screens);
  if (all.width <= 0 || all.height <= 0) return {};
  const double middle = (frame.x + frame.width / 2 - all.x) * desktop.width() / all.width;
  const double bottom = (all.y + all.height - frame.y) * desktop.height() / all.height;
  const double width = frame.width * scale;
  const double height = frame.height * scale;
  return {pixels(desktop.x() + middle - width / 2), pixels(desktop.y() + bottom - height),
          pixels(width), pixels(height)};
}

QRect placeOnScreens(const Rect& frame, const std::vector<Screen>& screens, double scale) {
  return inPoints(placeOnDesktop(frame, screens, desktopPixels(), scale));
}

}  // namespace brivane
