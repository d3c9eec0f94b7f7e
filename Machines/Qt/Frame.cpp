#include "Machines/Qt/Frame.h"

#include "Machines/Qt/EditorWindow.h"
#include "Machines/Qt/HUDWindow.h"

namespace brivane {

QtFrame::QtFrame(const QtPlatform& platform, const QtFrameRequest& request)
    : machine(request.machine), isX11(platform.isX11), ownApplication(platform, request) {}

std::unique_ptr<StatusItem> QtFrame::makeStatusItem() {
  auto item = std::make_unique<QtStatusItem>(ownApplication, isX11);
  lastStatusItem = item.get();
  return item;
}

std::unique_ptr<HUDWindow> QtFrame::makeHUDWindow(const HUDWindowAttributes& attributes) {
  return std::make_unique<QtHUDWindow>(attributes, machine.runtime(), machine.displays(),
                                       ownApplication);
}

std::unique_ptr<EditorWindow> QtFrame::makeEditorWindow(const EditorWindowAttributes& attributes) {
  return std::make_unique<QtEditorWindow>(attributes, ownApplication);
}

}  // namespace brivane
