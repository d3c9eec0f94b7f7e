#pragma once

#include <map>
#include <utility>

#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// A hotkey is registered once and released once, and none is left when the program has ended by
/// itself.
class HotkeyReferences : public Checker {
 public:
  HotkeyReferences(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  /// Virtual key code and modifiers.
  using Combination = std::pair<std::uint32_t, std::uint32_t>;

  void seeRegistered(Microseconds time, const HotkeyRegistered& registered);
  void seeUnregistered(Microseconds time, Combination combination);

  std::map<Combination, std::uint32_t> hotkeys;
};

}  // namespace brivane::judge
