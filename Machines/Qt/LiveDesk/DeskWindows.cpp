#include "Machines/Qt/LiveDesk/DeskWindows.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <set>

namespace brivane {
namespace {

/// Around all windows.
constexpr int screenMargin = 8;
/// For the panel and its title bar.
constexpr int panelRoom = 72;

QRect screenRoom() {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {0, 0, 1280, 800};
  return screen->availableGeometry().adjusted(screenMargin, screenMargin, -screenMargin,
                                              -screenMargin);
}

QRect moved(QRect box, const QRect& room) {
  box.moveRight(std::min(box.right(), room.right()));
  box.moveLeft(std::max(box.left(), room.left()));
  box.moveBottom(std::min(box.bottom(), room.bottom()));
  box.moveTop(std::max(box.top(), room.top()));
  return box;
}

}  // namespace

DeskWindows::DeskWindows(std::shared_ptr<LiveDesk> liveDesk, QtApplication& frameApplication,
                         SystemLog& log, bool isSeen)
    : desk(std::move(liveDesk)),
      application(frameApplication),
      ownPanel([this] { application.terminate(); }),
      input(*desk, [this](const QWindow& window, QPointF point) { return spotOf(window, point); }) {
  const auto file = isSeen ? std::nullopt : desk->pictureFile();
  if (file) picture.emplace(*file, log);
  if (QScreen* const screen = QGuiApplication::primaryScreen()) {
    connect(screen, &QScreen::availableGeometryChanged, this, [this] { roomChanged(); });
  }
  changes = desk->observe([this] { sync(); });
  roomChanged();
}

DeskWindows::~DeskWindows() = default;

void DeskWindows::roomChanged() {
  const QRect room = screenRoom();
  const QSize smallest = MonitorWindow::smallestSize();
  desk->setRoom({{room.x(), room.y() + panelRoom, room.width(), room.height() - panelRoom},
                 smallest.width(),
                 smallest.height()});
  sync();
  ownPanel.place(room);
  ownPanel.QWidget::show();
}

void DeskWindows::sync() {
  std::set<DisplayID> plugged;
  for (const LiveMonitor& monitor : desk->monitors()) {
    plugged.insert(monitor.display);
    showMonitor(monitor);
  }
  std::erase_if(windows, [&](const auto& one) { return !plugged.contains(one.first); });
  ownPanel.show(desk->machineControls());
}

void DeskWindows::showMonitor(const LiveMonitor& monitor) {
  auto& window = windows[monitor.display];
  if (!window) window.reset(makeWindow(monitor.display).release());
  window->show(monitor);
  const QSize size = window->pictureSize();
  window->show(desk->picture(monitor.display, static_cast<std::uint32_t>(size.width()),
                             static_cast<std::uint32_t>(size.height())));
}

std::unique_ptr<MonitorWindow> DeskWindows::makeWindow(DisplayID display) {
  const auto whenMoved = [this, display](const QPoint& place) {
    desk->windowMoved(display, place.x(), place.y());
    sync();
  };
  // A later task, which doesn't run if the window closes because the program ends.
  const auto whenClosed = [this, display] {
    QMetaObject::invokeMethod(
        this,
        [this, display] {
          desk->unplug(display);
          sync();
        },
        Qt::QueuedConnection);
  };
  return std::make_unique<MonitorWindow>(display, MonitorWindow::Handlers{whenMoved, whenClosed});
}

MonitorWindow* DeskWindows::window(DisplayID display) const {
  const auto found = windows.find(display);
  return found == windows.end() ? nullptr : found->second.get();
}

std::optional<LiveSpot> DeskWindows::spotOf(const QWindow& systemWindow, QPointF point) const {
  for (const auto& [display, window] : windows) {
    if (window->windowHandle() != &systemWindow) continue;
    const QRectF box = window->pictureBox();
    return LiveSpot{display, (point.x() - box.x()) / box.width(),
                    (point.y() - box.y()) / box.height()};
  }
  return std::nullopt;
}

QRect DeskWindows::placeOver(const Rect& frame) const {
  QRect room = screenRoom();
  const QSize size(static_cast<int>(std::lround(frame.width)),
                   static_cast<int>(std::lround(frame.height)));
  QPointF foot(room.center().x(), room.bottom());
  if (const auto spot = desk->spotAt({frame.x + frame.width / 2, frame.y})) {
    if (const MonitorWindow* const over = window(spot->display)) {
      const QRectF box = QRectF(over->pictureBox()).translated(over->pos());
      if (const QScreen* const screen = over->screen()) room = screen->availableGeometry();
      foot = {box.x() + spot->x * box.width(), box.y() + spot->y * box.height()};
    }
  }
  const QPoint corner(static_cast<int>(std::lround(foot.x() - size.width() / 2.0)),
                      static_cast<int>(std::lround(foot.y())) - size.height());
  return moved({corner, size}, room);
}

}  // namespace brivane
