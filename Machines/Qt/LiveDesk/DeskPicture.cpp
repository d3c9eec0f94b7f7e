#include "Machines/Qt/LiveDesk/DeskPicture.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QSaveFile>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <vector>

namespace brivane {
namespace {

constexpr int settlingMilliseconds = 100;

/// The stacking order that a window manager would give.
int layerOf(const QWidget& window) {
  if (window.windowType() == Qt::Popup) return 3;
  if (window.windowFlags().testFlag(Qt::WindowStaysOnTopHint)) return 2;
  return window.property("isPartOfDesk").toBool() ? 0 : 1;
}

std::vector<QWidget*> shownWindows() {
  std::vector<QWidget*> windows;
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible()) windows.push_back(widget);
  }
  std::ranges::sort(windows, [](const QWidget* one, const QWidget* other) {
    return std::pair(layerOf(*one), one->objectName()) <
           std::pair(layerOf(*other), other->objectName());
  });
  return windows;
}

bool changesPicture(QEvent::Type type) {
  return type == QEvent::UpdateRequest || type == QEvent::Show || type == QEvent::Hide ||
         type == QEvent::Move;
}

}  // namespace

DeskPicture::DeskPicture(std::filesystem::path pictureFile, SystemLog& systemLog)
    : file(std::move(pictureFile)), log(systemLog) {
  settling.setSingleShot(true);
  settling.setInterval(settlingMilliseconds);
  connect(&settling, &QTimer::timeout, this, [this] { write(); });
  qApp->installEventFilter(this);
}

bool DeskPicture::eventFilter(QObject* watched, QEvent* event) {
  if (!changesPicture(event->type()) || !watched->isWidgetType()) return false;
  if (static_cast<QWidget*>(watched)->isWindow() && !settling.isActive()) settling.start();
  return false;
}

QImage DeskPicture::take() {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {};
  const double scale = screen->devicePixelRatio();
  const QRect room = screen->geometry();
  QImage image((QSizeF(room.size()) * scale).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(QApplication::palette().color(QPalette::Window).lightness() < 128
                 ? QColor(24, 24, 28)
                 : QColor(198, 204, 212));
  QPainter painter(&image);
  for (QWidget* const window : shownWindows()) {
    painter.drawPixmap(window->pos() - room.topLeft(), window->grab());
  }
  return image;
}

/// A reader never finds half a file.
void DeskPicture::write() {
  QSaveFile whole(QString::fromStdString(file.string()));
  const bool isWritten =
      whole.open(QIODevice::WriteOnly) && take().save(&whole, "PNG") && whole.commit();
  logResult(isWritten ? QString("") : whole.errorString());
}

void DeskPicture::logResult(const QString& problem) {
  if (loggedProblem == problem) return;
  loggedProblem = problem;
  log.write(problem.isEmpty() ? "Brivane: a picture of the desk is kept in " + file.string()
                              : "Brivane: the picture of the desk can't be written to " +
                                    file.string() + ": " + problem.toStdString());
}

}  // namespace brivane
