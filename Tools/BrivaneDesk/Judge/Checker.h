#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "Tools/BrivaneDesk/Judge/KnownDesk.h"

namespace brivane::judge {

/// What a day must not show.
struct Breach {
  Microseconds time{0};
  /// What must hold.
  std::string rule;
  std::string found;
};

/// Judges a day by its trace, event after event, and keeps only what the next events need.
class Checker {
 public:
  Checker(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches, std::string checkedRule)
      : desk(knownDesk), breaches(allBreaches), rule(std::move(checkedRule)) {}
  virtual ~Checker() = default;
  Checker(const Checker&) = delete;
  Checker& operator=(const Checker&) = delete;

  /// After the desk has seen the event.
  virtual void see(const TraceEvent& event) = 0;

 protected:
  void breach(Microseconds time, const std::string& found) {
    breaches.push_back({time, rule, found});
  }
  /// Whether the last thirty seconds, all after `since`, saw no trouble, and the program runs
  /// without a fault.
  bool isQuiet(Microseconds time, Microseconds since) const {
    constexpr Microseconds quietTime = std::chrono::seconds(30);
    return time - desk.troubleAt >= quietTime && time - since >= quietTime && desk.isRunning &&
           desk.faults.empty();
  }
  static std::string nameOf(DisplayNumber display) { return "display " + std::to_string(display); }

  const KnownDesk& desk;

 private:
  std::vector<Breach>& breaches;
  const std::string rule;
};

}  // namespace brivane::judge
