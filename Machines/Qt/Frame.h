#pragma once

#include <memory>

#include "BrivaneApp/Frame/Frame.h"
#include "Machines/Qt/Application.h"

namespace brivane {

/// The visible side in Qt Widgets. One in a process. Main thread.
class QtFrame : public Frame {
 public:
  QtFrame(const QtPlatform& platform, const QtFrameRequest& request);

  QtApplication& application() override { return ownApplication; }
  std::unique_ptr<StatusItem> makeStatusItem() override;
  std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) override;
  std::unique_ptr<EditorWindow> makeEditorWindow(const EditorWindowAttributes& attributes) override;

 private:
  ResidentMachine& machine;
  const bool isX11;
  QtApplication ownApplication;
};

}  // namespace brivane
