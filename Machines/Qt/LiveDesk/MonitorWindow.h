#pragma once

#include <QImage>
#include <QPoint>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Qt/LiveDesk/ControlRow.h"
#include "Machines/Qt/LiveDesk/ElidedLabel.h"

namespace brivane {

/// A simulated monitor's window: its picture, and below it its name, status and buttons. It can be
/// dragged by any place that is no button. Main thread.
class MonitorWindow : public QWidget {
 public:
  /// Called for what the user does with the window.
  struct Handlers {
    std::function<void(const QPoint& place)> moved;
    std::function<void()> closed;
  };

  MonitorWindow(DisplayID shownDisplay, Handlers eventHandlers);

  /// The smallest usable size.
  static QSize smallestSize() { return {176, 112}; }

  DisplayID display() const { return ownDisplay; }
  void show(const LiveMonitor& monitor);
  /// The picture's size in pixels.
  QSize pictureSize() const;
  void show(const std::shared_ptr<const LivePicture>& newPicture);
  /// The picture's place in the window.
  QRect pictureBox() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void place(const LivePlace& newPlace);
  void layOut();
  void chooseFont();
  void reportMove();

  const DisplayID ownDisplay;
  const Handlers handlers;
  ElidedLabel* name;
  ElidedLabel* status;
  ControlRow* controls;
  QWidget* chin;
  std::shared_ptr<const LivePicture> picture;
  std::optional<LivePlace> placed;
  /// Whether the window may be elsewhere than at `placed`.
  bool isAway = false;
  /// During a drag: from the window's corner to the mouse.
  std::optional<QPoint> grip;
  bool isDragged = false;
  /// Runs while a window manager moves the window.
  QTimer moving;
  /// Runs while a window manager may still correct a placement.
  QTimer settling;
};

}  // namespace brivane
