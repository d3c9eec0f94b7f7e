#pragma once

#include <QPointer>
#include <memory>

#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Qt/Frame/StatusItem.h"
#include "Machines/Qt/LiveDesk/DeskWindows.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// The frame in Qt Widgets, one per process. Main thread.
class QtFrame : public Frame {
 public:
  QtFrame(const QtPlatform& platform, const QtFrameRequest& request);

  QtApplication& application() override { return ownApplication; }
  std::unique_ptr<StatusItem> makeStatusItem() override;
  std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) override;
  void expectHUD() override;
  std::unique_ptr<EditorWindow> makeEditorWindow(const EditorWindowAttributes& attributes) override;

  /// The last status item made; null once it is destroyed.
  QtStatusItem* statusItem() const { return lastStatusItem; }
  /// Null on a real machine.
  DeskWindows* desk() const { return deskWindows.get(); }

 private:
  void showOnPanel(QtStatusItem& item);

  ResidentMachine& machine;
  const bool isX11;
  QtApplication ownApplication;
  std::unique_ptr<DeskWindows> deskWindows;
  QPointer<QtStatusItem> lastStatusItem;
};

}  // namespace brivane
