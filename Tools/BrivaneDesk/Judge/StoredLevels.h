#pragma once

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/RestoreTimes.h"
#include "Tools/BrivaneDesk/Judge/SetHalves.h"

namespace brivane::judge {

/// A level is stored only when it was set or seen, and not when it was only read again from a
/// display whose stored level has yet to be restored.
class StoredLevels : public Checker {
 public:
  StoredLevels(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
               const RestoreTimes& restoreTimes);

  void see(const TraceEvent& event) override;

 private:
  struct Seen {
    Microseconds time{0};
    std::int64_t percent = 0;
  };
  struct SetEnd {
    Microseconds time{0};
    DisplayNumber display = 0;
  };

  void seeReading(const TraceEvent& event, const BusRead& read);
  void seeLevel(const TraceEvent& event, const SettingChanged& setting);
  void seeTable(const TraceEvent& event, DisplayNumber display);
  void awaitRestores();
  bool isCarriedOver(const TraceEvent& event, const SettingChanged& setting) const;
  bool isBeyondRange(Microseconds time, std::int64_t level) const;
  bool isAwaiting(DisplayNumber display) const;
  bool wasSet(Microseconds time, const std::string& identity) const;
  bool wasSeen(std::int64_t level, const std::string& identity) const;
  bool isOf(DisplayNumber display, const std::string& identity) const;
  bool isOfServices(const std::string& identity) const;

  const RestoreTimes& restores;
  SetHalves halves;
  std::optional<SetEnd> lastSet;
  /// What the last replies said, of each display.
  std::map<DisplayNumber, std::deque<Seen>> seen;
  std::set<DisplayNumber> awaiting;
  std::optional<Microseconds> forgotAt;
  /// A stored 0 or 100 that an effect must explain at the same moment.
  struct Unexplained {
    Microseconds time{0};
    std::string identity;
    std::int64_t level = 0;
  };
  std::optional<Unexplained> unexplained;
  /// The last table that was put in force.
  SetEnd lastTable;
  /// The last move of a slider.
  std::optional<std::pair<Microseconds, double>> lastMove;
};

}  // namespace brivane::judge
