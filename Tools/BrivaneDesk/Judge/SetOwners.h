#pragma once

#include <map>
#include <optional>
#include <vector>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/MenuReading.h"
#include "Tools/BrivaneDesk/Judge/RestoreTimes.h"
#include "Tools/BrivaneDesk/Judge/SetHalves.h"

namespace brivane::judge {

/// Each set belongs to a key, a slider, a request or a restore, and has the level that these ask
/// for.
class SetOwners : public Checker {
 public:
  SetOwners(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
            const MenuReading& menuReading, const RestoreTimes& restoreTimes);

  void see(const TraceEvent& event) override;

 private:
  struct Move {
    Microseconds time{0};
    double value = 0;
  };

  bool isOfKeys(Microseconds cause, const BusSet& set) const;
  bool isOfSlider(Microseconds cause, const BusSet& set) const;
  bool isOfRequest(Microseconds cause) const;
  bool isOfRestore(Microseconds cause, const BusSet& set) const;
  bool hasLevel(const BusSet& set, std::int64_t percent) const;

  const MenuReading& menu;
  const RestoreTimes& restores;
  SetHalves halves;
  /// The last two moves of each display's slider.
  std::map<DisplayNumber, std::vector<Move>> moves;
  std::optional<Microseconds> requestedAt;
};

}  // namespace brivane::judge
