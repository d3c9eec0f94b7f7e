#pragma once

#include <optional>

#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// A brightness key that is relayed arrives as the relay's hotkey of its direction, and the program
/// gives the keys back to the system only when the user asks, a hotkey is taken or a tool fails.
class Relay : public Checker {
 public:
  Relay(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  void seeStep(const TraceEvent& event, std::string_view words);
  void seeSetting(const TraceEvent& event, const SettingChanged& setting);

  /// The last brightness key that the user pressed.
  std::optional<bool> isLastUp;
  /// Whether the setting for the relay is off, or has become so by a value that may count as that.
  bool isOff = false;
  /// Whether both directions may have been given the same key.
  bool mayShareKey = false;
  /// Whether the tool that maps keys does as it is told.
  bool isToolWell = true;
  /// Whether something in this run may have kept the relay from working.
  bool isHindered = false;
  std::optional<Microseconds> commandAt;
};

}  // namespace brivane::judge
