#include "Machines/Qt/Frame.h"

#include "Machines/Qt/EditorWindow.h"
#include "Machines/Qt/HUDWindow.h"

namespace brivane {

QtFrame::QtFrame(const QtPlatform& platform, const QtFrameRequest& request)
    : machine(request.machine), isX11(platform.isX11), ownApplication(platform, request) {
  if (request.desk) {
    deskWindows = std::make_unique<DeskWindows>(request.desk, ownApplication, machine.log(), isX11);
  }
}

std::unique_ptr<StatusItem> QtFrame::makeStatusItem() {
  auto item = std::make_unique<QtStatusItem>(ownApplication, isX11);
  lastStatusItem = item.get();
  if (deskWindows) {
    DeskPanel& panel = deskWindows->panel();
    item->onConfigured([&panel] { panel.updateStatusItem(); });
    panel.setStatusItem(item.get());
  }
  return item;
}

std::unique_ptr<HUDWindow> QtFrame::makeHUDWindow(const HUDWindowAttributes& attributes) {
  return std::make_unique<QtHUDWindow>(attributes, machine.runtime(), machine.displays(),
                                       ownApplication, deskWindows.get());
}

std::unique_ptr<EditorWindow> QtFrame::makeEditorWindow(const EditorWindowAttributes& attributes) {
  return std::make_unique<QtEditorWindow>(attributes, ownApplication);
}

}  // namespace brivane
