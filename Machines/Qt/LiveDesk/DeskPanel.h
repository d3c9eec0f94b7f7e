#pragma once

#include <QPoint>
#include <QToolButton>
#include <QWidget>
#include <functional>
#include <optional>

#include "BrivaneUI/Frame/StatusItem.h"
#include "Machines/Common/Frame/LiveControls.h"
#include "Machines/Qt/LiveDesk/ControlRow.h"

namespace brivane {

/// The simulated machine's menu bar: the program's status item and the machine's controls. Main
/// thread.
class DeskPanel : public QWidget {
 public:
  /// `whenClosed` is to end the program.
  explicit DeskPanel(std::function<void()> whenClosed);

  void show(const LiveControls& machine);
  /// Centres the panel at the upper edge of that part of the screen.
  void place(const QRect& freeRoom);
  /// Shows the program's status item, if there is one. A click on it calls `whenClicked` with the
  /// place for the menu.
  void showStatusItem(const std::optional<StatusButton>& shown);
  std::function<void(QPoint place)> whenClicked;

  QToolButton& statusButton() { return *button; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void fit();

  const std::function<void()> closed;
  QRect room;
  QToolButton* button;
  ControlRow* controls;
};

}  // namespace brivane
