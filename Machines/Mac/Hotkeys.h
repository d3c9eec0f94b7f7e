#pragma once

#include <cstdint>
#include <map>

#include "BrivaneCore/Seams/Hotkeys.h"

namespace brivane {

/// Carbon's hotkeys, with the application as their target. The statuses are Carbon's. While a menu
/// is open Carbon keeps the application's events, but has the event dispatcher's handlers see them.
class MacHotkeys : public Hotkeys {
 public:
  MacHotkeys() = default;
  MacHotkeys(const MacHotkeys&) = delete;
  MacHotkeys& operator=(const MacHotkeys&) = delete;
  ~MacHotkeys() override;

  bool installHandler(Handler newHandler) override;
  void removeHandler() override;
  std::variant<HotkeyReference, HotkeyStatus> registerHotkey(std::uint32_t keyCode,
                                                             std::uint32_t modifiers,
                                                             HotkeyID hotkey) override;
  void unregisterHotkey(HotkeyReference reference) override;
  void setMenuOpen(bool isOpen) override;

  /// Called by the installed Carbon handlers with a hotkey's event; returns the handler's status.
  std::int32_t handle(void* carbonEvent);

 private:
  Handler handler;
  /// Carbon's reference to the handler; null when none is installed.
  void* installed = nullptr;
  /// The same for the event dispatcher's, while a menu is open.
  void* installedForMenu = nullptr;
  /// Carbon's references by the seam's. The seam's are never reused, Carbon's may be.
  std::map<HotkeyReference, void*> registered;
  HotkeyReference nextReference = 1;
};

}  // namespace brivane
