#pragma once

#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>

#include "BrivaneUI/Frame/StatusItem.h"
#include "Machines/Qt/Frame/Menu.h"
#include "Machines/Qt/Frame/TrayHost.h"

namespace brivane {

/// The status item in the desktop's tray, shown once there is a tray. Every click opens the menu at
/// the pointer. Main thread.
class QtStatusItem : public QObject, public StatusItem {
 public:
  /// Without `mayHaveTray` there is only the menu.
  QtStatusItem(QtApplication& frameApplication, bool mayHaveTray);
  ~QtStatusItem() override;
  QtStatusItem(const QtStatusItem&) = delete;
  QtStatusItem& operator=(const QtStatusItem&) = delete;

  void configureButton(const StatusButton& newButton) override;
  QtMenu& menu() override { return ownMenu; }
  /// True from the first tray on, also while that tray restarts.
  bool isInStatusBar() const override { return icon != nullptr; }

  /// As configured last; nothing before the first time.
  const std::optional<StatusButton>& button() const { return ownButton; }
  /// The handler is called after each change of the button.
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
