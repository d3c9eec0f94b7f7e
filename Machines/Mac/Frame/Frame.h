#pragma once

#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Mac/Frame/Application.h"

namespace brivane {

/// The visible side in AppKit. Main thread.
class MacFrame : public Frame {
 public:
  /// The Runtime's main queue is served by the main run loop, in its common modes.
  explicit MacFrame(Runtime& frameRuntime) : runtime(frameRuntime), ownApplication(frameRuntime) {}

  MacApplication& application() override { return ownApplication; }
  std::unique_ptr<StatusItem> makeStatusItem() override;
  std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) override;
  /// AppKit has the fonts already.
  void expectHUD() override {}
  std::unique_ptr<EditorWindow> makeEditorWindow(const EditorWindowAttributes& attributes) override;

 private:
  Runtime& runtime;
  MacApplication ownApplication;
};

}  // namespace brivane
