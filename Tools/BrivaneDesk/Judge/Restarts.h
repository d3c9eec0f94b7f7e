#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// A start clears first what an earlier run left of its effects; then, after a kill as after an
/// end, the program has the same hotkeys and the same mapping as the run before, unless somebody
/// has changed what these depend on. The user is asked for the Accessibility grant once.
class Restarts : public Checker {
 public:
  Restarts(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  struct Keys {
    /// By code and modifiers.
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> hotkeys;
    std::set<std::string> mapping;

    bool operator==(const Keys&) const = default;
  };

  void seeStart(const TraceEvent& event);
  void seeKeys(const TraceEvent& event);
  void settle(Microseconds time);

  bool isCleared = true;
  bool isSettled = true;
  /// Whether what keys depend on is as it was when the last run settled.
  bool isSame = false;
  /// Whether nothing else has changed them since the start.
  bool isUndisturbed = false;
  bool wasAsked = false;
  /// Whether a call has failed, so that the program may not remember that it asked.
  bool mayForget = false;
  Keys now;
  std::optional<Keys> before;
};

}  // namespace brivane::judge
