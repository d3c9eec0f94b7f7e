// The tray only reports clicks, and this program shows the menu: sent over the bus, its sliders
// would be empty lines.
#include "Machines/Qt/Frame/StatusItem.h"

#include <QApplication>
#include <QCursor>

#include "Machines/Qt/Toolkit/StatusIcon.h"

namespace brivane {

QtStatusItem::QtStatusItem(QtApplication& frameApplication, bool mayHaveTray)
    : ownMenu(frameApplication) {
  if (mayHaveTray) host = std::make_unique<TrayHost>(frameApplication.systemLog());
}

QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::configureButton(const StatusButton& newButton) {
  const bool isFirst = !ownButton;
  const bool isSame =
      !isFirst && ownButton->icon == newButton.icon && ownButton->toolTip == newButton.toolTip;
  ownButton = newButton;
  if (isSame) return;
  // For the title bars and task bars of the program's windows.
  QApplication::setWindowIcon(statusIcon(*ownButton));
  if (configured) configured();
  updateTray();
  if (isFirst && host) host->waitFor([this] { showInTray(); });
}

void QtStatusItem::updateTray() {
  if (!icon || !ownButton) return;
  icon->setIcon(QApplication::windowIcon());
  icon->setToolTip(QString::fromStdString(ownButton->toolTip));
}

void QtStatusItem::showInTray() {
  icon = std::make_unique<QSystemTrayIcon>();
  updateTray();
  QObject::connect(icon.get(), &QSystemTrayIcon::activated, icon.get(),
                   [this] { ownMenu.open(QCursor::pos()); });
  icon->show();
}

}  // namespace brivane
