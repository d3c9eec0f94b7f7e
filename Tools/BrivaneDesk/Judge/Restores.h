#pragma once

#include <map>
#include <set>
#include <string>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/RestoreTimes.h"

namespace brivane::judge {

/// After a start, a wake and a change of the arrangement, every display that answers and whose
/// level was stored has got a set, after quiet seconds at the latest; the menu's closing is when
/// this is looked at.
class Restores : public Checker {
 public:
  Restores(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
           const RestoreTimes& restoreTimes);

  void see(const TraceEvent& event) override;

 private:
  void forget(Microseconds time);
  void look(Microseconds time);
  bool mustBeRestored(DisplayNumber number, const KnownDisplay& display) const;

  const RestoreTimes& restores;
  Microseconds forgotAt{0};
  /// The panels whose level was stored then.
  std::set<std::string> stored;
  /// The first answer of each monitor since then.
  std::map<DisplayNumber, Microseconds> answeredAt;
  /// The last accepted set, by the panel's identity.
  std::map<std::string, Microseconds> setAt;
};

}  // namespace brivane::judge
