#pragma once

#include <memory>

#include "BrivaneUI/Frame/Frame.h"
#include "Machines/Desk/Frame/FrameApplication.h"
#include "Machines/Desk/Frame/FrameEditor.h"
#include "Machines/Desk/Frame/FrameHUD.h"
#include "Machines/Desk/Frame/FrameMenu.h"
#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {

/// The recording frame: it draws nothing, keeps what it would show, traces each change, and has
/// functions that play the user. Its appearance is the desk's. Main thread.
class DeskFrame : public Frame {
 public:
  DeskFrame(Runtime& frameRuntime, DeskHardware& deskHardware, const Trace& frameTrace = {});

  DeskApplication& application() override { return ownApplication; }
  std::unique_ptr<StatusItem> makeStatusItem() override;
  std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) override;
  void expectHUD() override {}
  std::unique_ptr<EditorWindow> makeEditorWindow(const EditorWindowAttributes& attributes) override;

  /// The one that the program made last; null once the program has dropped it.
  DeskStatusItem* statusItem() const { return ownStatusItem; }
  DeskHUDWindow* hudWindow() const { return ownHUDWindow; }
  DeskEditorWindow* editorWindow() const { return ownEditorWindow; }

 private:
  Runtime& runtime;
  const Trace trace;
  DeskApplication ownApplication;
  DeskStatusItem* ownStatusItem = nullptr;
  DeskHUDWindow* ownHUDWindow = nullptr;
  DeskEditorWindow* ownEditorWindow = nullptr;
  const Observation hardwareNotices;
};

}  // namespace brivane
