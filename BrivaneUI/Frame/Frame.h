#pragma once

#include <functional>
#include <memory>

#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Application.h"
#include "BrivaneUI/Frame/EditorWindow.h"
#include "BrivaneUI/Frame/HUDWindow.h"
#include "BrivaneUI/Frame/StatusItem.h"

namespace brivane {

/// What a person sees of the program, and how they answer. A frame shows what it is told and
/// decides nothing. Main thread. Windows and status items must not outlive their frame.
class Frame {
 public:
  virtual ~Frame() = default;

  virtual Application& application() = 0;
  virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;
  virtual std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) = 0;
  /// Called once at most, at a key press that may lead to the first HUD, before the monitor is
  /// asked. The frame may prepare on another thread what delays a first HUD; it must not block, and
  /// nothing is seen of it. `makeHUDWindow` may follow at once, or never.
  virtual void expectHUD() = 0;
  virtual std::unique_ptr<EditorWindow> makeEditorWindow(
      const EditorWindowAttributes& attributes) = 0;
};

/// Opens what a person sees of the resident program on that machine; null when there is nothing to
/// show it with.
using FrameOpener = std::function<std::unique_ptr<Frame>(ResidentMachine& machine)>;

}  // namespace brivane
