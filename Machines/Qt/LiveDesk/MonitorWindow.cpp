// The window has no title bar, so that its place and size are the display's with every window
// manager and without one. A move right after a placement is a window manager's correction and
// doesn't move the display.
#include "Machines/Qt/LiveDesk/MonitorWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace brivane {
namespace {

constexpr int bezel = 5;
constexpr int chinMargin = bezel + 1;
constexpr int controlHeight = 20;
constexpr int fontPixels = 11;
constexpr int smallFontPixels = 10;
/// Narrower windows have the small font.
constexpr int narrowWidth = 250;
/// Longer than the pauses within a drag.
constexpr int movedMilliseconds = 150;
constexpr int settledMilliseconds = 400;

}  // namespace

MonitorWindow::MonitorWindow(DisplayID shownDisplay, Handlers eventHandlers)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      ownDisplay(shownDisplay),
      handlers(std::move(eventHandlers)) {
  setObjectName("monitor " + QString::number(shownDisplay));
  setProperty("isPartOfDesk", true);
  setAttribute(Qt::WA_ShowWithoutActivating);
  chin = new QWidget(this);
  auto* const rows = new QVBoxLayout(chin);
  rows->setContentsMargins(chinMargin, 3, chinMargin, bezel);
  rows->setSpacing(3);
  auto* const heading = new QHBoxLayout;
  heading->setSpacing(6);
  name = new ElidedLabel(chin);
  status = new ElidedLabel(chin);
  status->setForegroundRole(QPalette::PlaceholderText);
  auto* const close = new QToolButton(chin);
  close->setText("✕");
  close->setAutoRaise(true);
  close->setFixedSize(18, 18);
  close->setFocusPolicy(Qt::TabFocus);
  close->setToolTip("Unplug");
  close->setAccessibleName("Unplug");
  connect(close, &QToolButton::clicked, this, [this] { this->close(); });
  heading->addWidget(name);
  heading->addStretch(1);
  heading->addWidget(status);
  heading->addWidget(close);
  rows->addLayout(heading);
  controls = new ControlRow(chin, controlHeight, 3);
  rows->addWidget(controls);
  moving.setSingleShot(true);
  moving.setInterval(movedMilliseconds);
  connect(&moving, &QTimer::timeout, this, [this] { reportMove(); });
  settling.setSingleShot(true);
  settling.setInterval(settledMilliseconds);
}

void MonitorWindow::show(const LiveMonitor& monitor) {
  const QString title = QString::fromStdString(monitor.controls.title);
  if (windowTitle() != title) setWindowTitle(title);
  name->setText(title);
  QStringList lines;
  for (const std::string& line : monitor.controls.status) {
    lines.append(QString::fromStdString(line));
  }
  status->setText(lines.join(", "));
  chin->setToolTip(title + "\n" + status->text());
  place(monitor.place);
  chooseFont();
  controls->show(monitor.controls);
  layOut();
  if (!isVisible()) QWidget::show();
}

void MonitorWindow::place(const LivePlace& newPlace) {
  if (placed == newPlace && !isAway) return;
  placed = newPlace;
  isAway = true;
  if (grip) return;
  isAway = false;
  moving.stop();
  settling.start();
  setFixedSize(newPlace.width, newPlace.height);
  move(newPlace.x, newPlace.y);
}

void MonitorWindow::chooseFont() {
  QFont chosen = QApplication::font();
  chosen.setPixelSize(width() < narrowWidth ? smallFontPixels : fontPixels);
  if (chin->font().pixelSize() == chosen.pixelSize()) return;
  chin->setFont(chosen);
  chosen.setBold(true);
  name->setFont(chosen);
}

/// The picture gets the room that text and buttons leave. The name is elided before the status,
/// because the status changes.
void MonitorWindow::layOut() {
  status->setMinimumWidth(std::min(status->sizeHint().width(), width() * 3 / 5));
  controls->fit(width() - 2 * chinMargin);
  const int needed = chin->layout()->heightForWidth(width());
  const QRect box(0, height() - needed, width(), needed);
  if (chin->geometry() == box) return;
  chin->setGeometry(box);
  update();
}

QRect MonitorWindow::pictureBox() const {
  return {bezel, bezel, width() - 2 * bezel, std::max(chin->y() - bezel, 1)};
}

QSize MonitorWindow::pictureSize() const {
  return (QSizeF(pictureBox().size()) * devicePixelRatioF()).toSize();
}

void MonitorWindow::show(const std::shared_ptr<const LivePicture>& newPicture) {
  if (picture == newPicture) return;
  picture = newPicture;
  update(pictureBox());
}

void MonitorWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor edge = palette().color(QPalette::Window).lightness() < 128 ? QColor(92, 92, 98)
                                                                          : QColor(168, 168, 174);
  painter.fillRect(rect(), edge);
  painter.fillRect(rect().adjusted(1, 1, -1, -1), palette().color(QPalette::Window));
  const QRect box = pictureBox();
  painter.fillRect(box.adjusted(-1, -1, 1, 1), Qt::black);
  if (!picture) return;
  const QImage image(reinterpret_cast<const uchar*>(picture->pixels.data()),
                     static_cast<int>(picture->width), static_cast<int>(picture->height),
                     QImage::Format_RGB32);
  painter.drawImage(box, image);
}

/// Accepts the event, so that the session can end.
void MonitorWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  handlers.closed();
}

void MonitorWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  if (placed && !grip && !settling.isActive()) moving.start();
}

/// A window that a window manager has resized was not moved by the user.
void MonitorWindow::reportMove() {
  if (!placed || !isVisible() || size() != QSize(placed->width, placed->height)) return;
  const QPoint now = pos();
  if (!isAway && now == QPoint(placed->x, placed->y)) return;
  // The next placement is to move the window, wherever the display goes.
  isAway = true;
  handlers.moved(now);
}

void MonitorWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  activateWindow();
  raise();
  grip = event->globalPosition().toPoint() - pos();
  isDragged = false;
}

void MonitorWindow::mouseMoveEvent(QMouseEvent* event) {
  if (!grip) return;
  const QPoint goal = event->globalPosition().toPoint() - *grip;
  if (goal == pos()) return;
  isDragged = true;
  move(goal);
}

void MonitorWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !grip) return;
  grip.reset();
  moving.stop();
  // A click doesn't move the display, wherever a window manager has put the window.
  if (isDragged) {
    reportMove();
  } else if (isAway && placed) {
    place(*placed);
  }
}

}  // namespace brivane
