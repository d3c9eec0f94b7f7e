#pragma once

#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>

#include "BrivaneUI/Frame/StatusItem.h"
#include "Machines/Qt/Frame/Menu.h"
#include "Machines/Qt/Frame/TrayHost.h"

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

  /// As it was configured last; nothing before.
  const std::optional<StatusButton>& button() const { return ownButton; }
  /// The handler is called when the button was configured.
  void onConfigured(std::function<void()> handler) { configured = std::move(handler); }

 private:
  void updateTray();
  void showInTray();

  QtMenu ownMenu;
  std::optional<StatusButton> ownButton;
  std::function<void()> configured;
  std::unique_ptr<QSystemTrayIcon> icon;
  std::unique_ptr<TrayHost> host;
};

}  // namespace brivane
