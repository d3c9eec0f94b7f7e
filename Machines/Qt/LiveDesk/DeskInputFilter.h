#pragma once

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>

#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Qt/LiveDesk/DeskKeys.h"

namespace brivane {

/// Passes mouse and keyboard events of the program's windows to the simulated machine. Main thread.
class DeskInputFilter : public QObject {
 public:
  /// The monitor, and the place on it, of a point in its window; nothing for other windows.
  using FindSpot = std::function<std::optional<LiveSpot>(const QWindow& window, QPointF point)>;

  DeskInputFilter(LiveDesk& liveDesk, FindSpot findSpot);
  ~DeskInputFilter() override;
  DeskInputFilter(const DeskInputFilter&) = delete;
  DeskInputFilter& operator=(const DeskInputFilter&) = delete;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool keyPressed(QWindow& window, const QKeyEvent& event);
  bool keyReleased(QWindow& window, const QKeyEvent& event);
  void release(const DeskKey& key);
  void releaseAll();
  void reportPointer();
  void grabOrUngrab(QWindow& window);
  bool isAnyDown(std::initializer_list<std::uint16_t> keyCodes) const;

  LiveDesk& desk;
  const FindSpot spotOf;
  /// Held keys, and whether the simulated machine has used their presses.
  std::map<DeskKey, bool> down;
  /// The window that has grabbed the keyboard.
  QPointer<QWindow> grabber;
  /// Not reported yet.
  std::optional<LiveSpot> pointer;
  QTimer reporting;
};

}  // namespace brivane
