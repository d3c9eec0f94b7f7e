#pragma once

#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Mac/Frame/Application.h"

namespace brivane {

/// The frame in AppKit. Main thread.
class MacFrame : public Frame {
 public:
  /// The main run loop serves the Runtime's main queue, in its common modes.
  explicit MacFrame(Runtime& frameRuntime) : runtime(frameRuntime), ownApplication(frameRuntime) {}

  MacApplication& application() override { return ownApplication; }
  std::unique_ptr<StatusItem> makeStatusItem() override;
  std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) override;
  /// AppKit has loaded the fonts.
  void expectHUD() override {}
  std::unique_ptr<EditorWindow> makeEditorWindow(const EditorWindowAttributes& attributes) override;

 private:
  Runtime& runtime;
  MacApplication ownApplication;
};

}  // namespace brivane
