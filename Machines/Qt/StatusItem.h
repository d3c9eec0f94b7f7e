#pragma once

#include <QIcon>
#include <QSystemTrayIcon>
#include <memory>
#include <optional>

#include "BrivaneApp/Frame/StatusItem.h"
#include "Machines/Qt/Menu.h"
#include "Machines/Qt/TrayHost.h"

namespace brivane {

/// The program's place in the desktop's tray: there as soon as there is one. Every click opens the
/// menu, where the pointer is. Main thread.
class QtStatusItem : public QObject, public StatusItem {
 public:
  /// Without `mayHaveTray` the menu is all there is.
  QtStatusItem(QtApplication& frameApplication, bool mayHaveTray);
  ~QtStatusItem() override;
  QtStatusItem(const QtStatusItem&) = delete;
  QtStatusItem& operator=(const QtStatusItem&) = delete;

  void configureButton(const StatusButton& newButton) override;
  QtMenu& menu() override { return ownMenu; }

 private:
  void showInTray();

  QtMenu ownMenu;
  std::optional<StatusButton> button;
  std::unique_ptr<QSystemTrayIcon> icon;
  std::unique_ptr<TrayHost> host;
};

/// The button's picture in the sizes that trays use.
QIcon statusIcon(const StatusButton& button);

}  // namespace brivane
