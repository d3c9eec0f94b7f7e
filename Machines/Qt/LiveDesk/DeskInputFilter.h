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

/// The person's mouse and keyboard as those of the simulated machine, for as long as they are used
/// on one of the program's windows. Main thread.
class DeskInputFilter : public QObject {
 public:
  /// Which place of which monitor a point of a window is; nothing for other windows.
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
  void movePointer();
  void keepKeys(QWindow& window);
  bool isAnyDown(std::initializer_list<std::uint16_t> keyCodes) const;

  LiveDesk& desk;
  const FindSpot spotOf;
  /// Keys that are down, and whether the machine has kept their presses to itself.
  std::map<DeskKey, bool> down;
  /// The window that keeps other programs from the keys.
  QPointer<QWindow> keeper;
  /// Not told yet.
  std::optional<LiveSpot> pointer;
  QTimer telling;
};

}  // namespace brivane
