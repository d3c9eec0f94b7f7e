#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "BrivaneCore/Input/HotkeyRegistering.h"
#include "BrivaneCore/Seams/Hotkeys.h"
#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// Hotkeys registered with the system, with one handler for all of them. Main thread.
class CarbonHotkeyRegistrar : public HotkeyRegistering {
 public:
  CarbonHotkeyRegistrar(Hotkeys& systemHotkeys, SystemLog& systemLog);
  CarbonHotkeyRegistrar(const CarbonHotkeyRegistrar&) = delete;
  CarbonHotkeyRegistrar& operator=(const CarbonHotkeyRegistrar&) = delete;
  ~CarbonHotkeyRegistrar() override;

  void installHandler(Callback pressed, Callback released) override;
  /// A refusal is logged, and not tried again.
  bool registerHotkey(const HotkeyBinding& binding, std::uint32_t id) override;
  bool isRegistered(std::uint32_t id) const override;
  void unregisterAll() override;

 private:
  void handle(HotkeyEvent event, HotkeyID hotkey) const;

  /// In the order of registration.
  std::vector<HotkeyReference> carbonRefs;
  std::set<std::uint32_t> registeredIDs;
  /// Whether `hotkeys` calls `handle`.
  bool carbonHandler = false;
  Callback onPressed;
  Callback onReleased;

  Hotkeys& hotkeys;
  SystemLog& log;
};

}  // namespace brivane
