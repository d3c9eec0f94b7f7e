#pragma once

#include <functional>
#include <memory>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Application.h"
#include "BrivaneUI/Frame/EditorWindow.h"
#include "BrivaneUI/Frame/HUDWindow.h"
#include "BrivaneUI/Frame/StatusItem.h"

namespace brivane {

/// The program's user interface on a desktop: shows what the program gives it, reports the user's
/// actions and decides nothing. Main thread. Windows and status items must not outlive the frame.
class Frame {
 public:
  virtual ~Frame() = default;

  virtual Application& application() = 0;
  virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;
  virtual std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) = 0;
  /// Called at most once, at a key press that may lead to the first HUD, before the monitor is
  /// read. The frame may prepare on another thread what delays a first HUD, without blocking or
  /// showing anything. `makeHUDWindow` may follow at once, or never.
  virtual void expectHUD() = 0;
  virtual std::unique_ptr<EditorWindow> makeEditorWindow(
      const EditorWindowAttributes& attributes) = 0;
};

/// Opens the frame of the resident program on a machine; null when nothing can be shown.
using FrameOpener = std::function<std::unique_ptr<Frame>(ResidentMachine& machine)>;

}  // namespace brivane
