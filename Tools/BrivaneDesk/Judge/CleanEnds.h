#pragma once

#include <set>
#include <string>

#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// A program that ends by itself leaves every plugged-in display calibrated, no tap, and the
/// keyboard's mapping without its relay and with the entries of others.
class CleanEnds : public Checker {
 public:
  CleanEnds(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  void seeMapping(const MappingChanged& mapped);
  void seeEnd(Microseconds time);

  std::set<DisplayNumber> changed;
  int taps = 0;
  std::set<std::string> others;
  /// Whether the next change of the mapping is another process's.
  bool isOfAnother = false;
  /// The key mapping tool, in the words of scenarios.
  std::string tool;
  std::set<std::string> mapping;
};

/// The entries of a mapping as the trace writes it.
std::set<std::string> entriesOf(std::string_view mapping);

}  // namespace brivane::judge
