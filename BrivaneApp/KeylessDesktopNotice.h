#pragma once

#include "BrivaneApp/StatusItemController.h"
#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "BrivaneCore/Input/HotkeyManager.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// Tells each user once, in a notice, that the desktop leaves the program no keys and shows no
/// status item, and what to do about it. Main thread.
class KeylessDesktopNotice {
 public:
  /// `openEditor` is what the notice's button does. All other arguments must outlive this; the
  /// catalogue is the application's.
  KeylessDesktopNotice(ResidentMachine& machine, const HotkeyManager& hotkeyManager,
                       const StatusItemController& statusItemController,
                       const StringCatalogue& stringCatalogue, Task openEditor);
  ~KeylessDesktopNotice();
  KeylessDesktopNotice(const KeylessDesktopNotice&) = delete;
  KeylessDesktopNotice& operator=(const KeylessDesktopNotice&) = delete;

  void start();

 private:
  void tellIfNeeded();
  UserNotice notice() const;

  const HotkeyManager& hotkeys;
  const StatusItemController& statusItem;
  const StringCatalogue& catalogue;
  const Task editHotkeys;
  TimerID timer = 0;

  Runtime& runtime;
  Keyboard& keyboard;
  const HotkeyBindingStore bindings;
  /// Null where the desktop leaves every program its keys and a status bar.
  UserNotices* const notices;
};

}  // namespace brivane
