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
  bool wasAsked = false;
  /// Whether the program may not remember that it asked: a call has failed, or another process has
  /// changed the setting.
  bool mayForget = false;
  /// When somebody last changed what keys depend on.
  std::optional<Microseconds> changedAt;
  Keys now;
  /// Those of the run before, and its start.
  std::optional<Keys> before;
  Microseconds startBefore{0};
};

}  // namespace brivane::judge
