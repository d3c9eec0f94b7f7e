#pragma once

#include <QObject>
#include <QRect>
#include <map>
#include <memory>
#include <optional>

#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Qt/LiveDesk/DeskInputFilter.h"
#include "Machines/Qt/LiveDesk/DeskPanel.h"
#include "Machines/Qt/LiveDesk/DeskPicture.h"
#include "Machines/Qt/LiveDesk/MonitorWindow.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// A simulated machine on the real screen: a window for each monitor and a panel for the machine
/// itself. Main thread.
class DeskWindows : public QObject {
 public:
  /// Without a screen (`isSeen` false) the windows are drawn into a file.
  DeskWindows(std::shared_ptr<LiveDesk> liveDesk, QtApplication& frameApplication, SystemLog& log,
              bool isSeen);
  ~DeskWindows() override;
  DeskWindows(const DeskWindows&) = delete;
  DeskWindows& operator=(const DeskWindows&) = delete;

  /// The place on the real screen for a window with that frame on the simulated screens: in its own
  /// size, over the window of its display.
  QRect placeOver(const Rect& frame) const;

  DeskPanel& panel() { return ownPanel; }
  /// Null for displays without a window.
  MonitorWindow* window(DisplayID display) const;

 private:
  void roomChanged();
  void sync();
  void showMonitor(const LiveMonitor& monitor);
  std::unique_ptr<MonitorWindow> makeWindow(DisplayID display);
  std::optional<LiveSpot> spotOf(const QWindow& window, QPointF point) const;

  struct Later {
    void operator()(MonitorWindow* window) const {
      // The window may be handling one of its events.
      window->hide();
      window->deleteLater();
    }
  };

  const std::shared_ptr<LiveDesk> desk;
  QtApplication& application;
  DeskPanel ownPanel;
  std::map<DisplayID, std::unique_ptr<MonitorWindow, Later>> windows;
  DeskInputFilter input;
  std::optional<DeskPicture> picture;
  Observation changes;
};

}  // namespace brivane
