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

/// The simulated machine's own menu bar, with the program's status item, and what can be done at
/// the machine itself. Main thread.
class DeskPanel : public QWidget {
 public:
  /// The handler is to end the program: closing the panel is closing the desk.
  explicit DeskPanel(std::function<void()> whenClosed);

  void show(const LiveControls& machine);
  /// At the upper edge of that part of the screen, in its middle.
  void place(const QRect& freeRoom);
  /// How the program's status item looks; nothing when there is none. A click on it calls
  /// `whenClicked` with the place for its menu.
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
