#include "Machines/Qt/Frame/Frame.h"

#include <dlfcn.h>

#include "Machines/Qt/Frame/EditorWindow.h"
#include "Machines/Qt/Frame/HUDWindow.h"

namespace brivane {
namespace {

/// Fontconfig reads its files at its first use, on any thread. That is most of the time that a
/// program's first text takes.
void readFontConfiguration() {
  void* const fontconfig = ::dlopen("libfontconfig.so.1", RTLD_LAZY | RTLD_NOLOAD);
  if (fontconfig == nullptr) return;
  const auto initialize = reinterpret_cast<int (*)()>(::dlsym(fontconfig, "FcInit"));  // NOLINT
  if (initialize != nullptr) initialize();
  ::dlclose(fontconfig);
}

}  // namespace

QtFrame::QtFrame(const QtPlatform& platform, const QtFrameRequest& request)
    : machine(request.machine), isX11(platform.isX11), ownApplication(platform, request) {
  if (request.desk) {
    deskWindows = std::make_unique<DeskWindows>(request.desk, ownApplication, machine.log(), isX11);
  }
}

std::unique_ptr<StatusItem> QtFrame::makeStatusItem() {
  auto item = std::make_unique<QtStatusItem>(ownApplication, isX11);
  lastStatusItem = item.get();
  if (deskWindows) showOnPanel(*item);
  return item;
}

void QtFrame::showOnPanel(QtStatusItem& item) {
  DeskPanel& panel = deskWindows->panel();
  const auto show = [&panel, &item] { panel.showStatusItem(item.button()); };
  item.onConfigured(show);
  show();
  QObject::connect(&item, &QObject::destroyed, &panel, [&panel] { panel.showStatusItem({}); });
  panel.whenClicked = [shown = QPointer(&item)](QPoint place) {
    if (shown) shown->menu().open(place);
  };
}

std::unique_ptr<HUDWindow> QtFrame::makeHUDWindow(const HUDWindowAttributes& attributes) {
  return std::make_unique<QtHUDWindow>(attributes, machine.runtime(), machine.displays(),
                                       ownApplication, deskWindows.get());
}

void QtFrame::expectHUD() {
  machine.runtime()
      .makeSerialQueue("fonts", QueueQuality::userInitiated)
      ->async(readFontConfiguration);
}

std::unique_ptr<EditorWindow> QtFrame::makeEditorWindow(const EditorWindowAttributes& attributes) {
  return std::make_unique<QtEditorWindow>(attributes, ownApplication);
}

}  // namespace brivane
