#include "Machines/Mac/Frame/Frame.h"

#include "Machines/Mac/Frame/EditorWindow.h"
#include "Machines/Mac/Frame/HUDWindow.h"
#include "Machines/Mac/Frame/StatusItem.h"

namespace brivane {

std::unique_ptr<StatusItem> MacFrame::makeStatusItem() {
  return std::make_unique<MacStatusItem>(ownApplication);
}

std::unique_ptr<HUDWindow> MacFrame::makeHUDWindow(const HUDWindowAttributes& attributes) {
  return std::make_unique<MacHUDWindow>(attributes, runtime);
}

std::unique_ptr<EditorWindow> MacFrame::makeEditorWindow(const EditorWindowAttributes& attributes) {
  return std::make_unique<MacEditorWindow>(attributes, runtime, ownApplication);
}

}  // namespace brivane
