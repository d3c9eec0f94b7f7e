#pragma once

#include <string>
#include <variant>
#include <vector>

#include "BrivaneApp/HotkeyEditor.h"
#include "BrivaneApp/KeyPressCoordinator.h"
#include "BrivaneApp/StatusItemController.h"
#include "BrivaneCore/Levels/BrightnessSettings.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/Machine.h"
#include "BrivaneCore/Seams/RemoteCommands.h"

namespace brivane {

/// Does what other programs ask for, by the same ways as hotkeys and menu. Main thread.
class RemoteController : public RemoteCommands {
 public:
  /// All arguments must outlive the controller.
  RemoteController(Machine& machine, BrightnessController& brightnessController,
                   KeyPressCoordinator& keyPressCoordinator,
                   StatusItemController& statusItemController, HotkeyEditor& programHotkeyEditor);

  RemoteLevel pressUp() override;
  RemoteLevel pressDown() override;
  RemoteLevel set(Percent level, const std::string& display) override;
  RemoteLevel get(const std::string& display) override;
  std::vector<RemoteDisplay> list() override;
  void showMenu() override;
  void showHotkeyEditor() override;

 private:
  using Found = std::variant<DisplayTarget, RemoteFailure>;

  RemoteLevel press(BrightnessDirection direction);
  Found find(const std::string& display);
  Found findUnderPointer();
  RemoteLevel levelOf(const DisplayTarget& target) const;
  RemoteFailure whyPassedThrough(const DisplayTarget& target) const;

  BrightnessController& controller;
  KeyPressCoordinator& keyPress;
  StatusItemController& statusItem;
  HotkeyEditor& hotkeyEditor;

  DisplaySystem& displays;
  const BrightnessSettings settings;
};

}  // namespace brivane
