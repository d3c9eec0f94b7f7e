#pragma once

#include <map>
#include <memory>

#include "BrivaneCore/Seams/Hotkeys.h"
#include "Machines/Common/Keys/HotkeyTable.h"
#include "Machines/Desk/Hardware/Trace.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// One program's hotkeys. The only error status is -9878: the combination is taken. Unregistering
/// an unknown hotkey is a fatal error.
class DeskHotkeys : public Hotkeys {
 public:
  DeskHotkeys(HotkeyTable& hotkeyTable, Faults& machineFaults, const Tracer& hardwareTracer)
      : table(hotkeyTable), faults(machineFaults), tracer(hardwareTracer) {}
  ~DeskHotkeys() override { releaseAll(); }

  bool installHandler(Handler newHandler) override;
  void removeHandler() override;
  std::variant<HotkeyReference, HotkeyStatus> registerHotkey(std::uint32_t keyCode,
                                                             std::uint32_t modifiers,
                                                             HotkeyID hotkey) override;
  void unregisterHotkey(HotkeyReference reference) override;

  /// Unregisters all, as the system does when a program ends.
  void releaseAll();

 private:
  HotkeyTable& table;
  Faults& faults;
  const Tracer& tracer;
  std::shared_ptr<Handler> handler = std::make_shared<Handler>();
  std::map<HotkeyReference, KeyCombination> references;
  bool hasEnded = false;
};

}  // namespace brivane
