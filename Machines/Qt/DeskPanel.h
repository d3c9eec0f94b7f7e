#pragma once

#include <QPointer>
#include <QToolButton>
#include <QWidget>
#include <functional>

#include "Machines/Common/Frame/LiveControls.h"
#include "Machines/Qt/ControlRow.h"
#include "Machines/Qt/StatusItem.h"

namespace brivane {

/// The simulated machine's own menu bar, with the program's status item, and what can be done at
/// the machine itself. Main thread.
class DeskPanel : public QWidget {
 public:
  /// The handler is to end the program: closing the panel is closing the desk.
  explicit DeskPanel(std::function<void()> whenClosed);

  void show(const LiveControls& machine);
  /// At the upper edge of that part of the screen, in its middle.
  void place(const QRect& itsRoom);
  void setStatusItem(QtStatusItem* item);
  /// The item looks different.
  void updateStatusItem();

  QToolButton& statusButton() { return *button; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void openMenu();
  void fit();

  const std::function<void()> closed;
  QRect room;
  QPointer<QtStatusItem> statusItem;
  QToolButton* button;
  ControlRow* controls;
};

}  // namespace brivane
