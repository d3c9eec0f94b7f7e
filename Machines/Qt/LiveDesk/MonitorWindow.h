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

/// A simulated monitor on the screen: its picture, and below it its name, what can be read of it,
/// and its buttons. It can be taken by any place that is no button. Main thread.
class MonitorWindow : public QWidget {
 public:
  /// What happens at the window, by a person's hand.
  struct Handlers {
    std::function<void(const QPoint& place)> moved;
    std::function<void()> closed;
  };

  MonitorWindow(DisplayID shownDisplay, Handlers eventHandlers);

  /// The smallest window that can be used.
  static QSize smallestSize() { return {176, 112}; }

  DisplayID display() const { return ownDisplay; }
  void show(const LiveMonitor& monitor);
  /// How many pixels the picture has.
  QSize pictureSize() const;
  void show(const std::shared_ptr<const LivePicture>& newPicture);
  /// Where the picture is in the window.
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
  void tellOfMove();

  const DisplayID ownDisplay;
  const Handlers handlers;
  ElidedLabel* name;
  ElidedLabel* status;
  ControlRow* controls;
  QWidget* chin;
  std::shared_ptr<const LivePicture> picture;
  std::optional<LivePlace> placed;
  /// It was moved, and its owner knows.
  bool isAway = false;
  /// From the window's corner to where it was taken.
  std::optional<QPoint> grip;
  bool isDragged = false;
  /// Runs while the window is on its way.
  QTimer moving;
  /// Runs while a window manager may still move what was placed.
  QTimer settling;
};

}  // namespace brivane
