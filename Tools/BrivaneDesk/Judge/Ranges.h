#pragma once

#include <map>
#include <set>
#include <string>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/GammaCurves.h"
#include "Tools/BrivaneDesk/Judge/MenuReading.h"
#include "Tools/BrivaneDesk/Judge/RestoreTimes.h"

namespace brivane::judge {

/// Dimming that a key or slider begins begins at 0, a boost at 100, and neither while its setting
/// is off; the boost goes into the headroom that the display has.
class Ranges : public Checker {
 public:
  Ranges(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
         const MenuReading& menuReading, const GammaCurves& gammaCurves,
         const RestoreTimes& restoreTimes);

  void see(const TraceEvent& event) override;

 private:
  enum class Effect { none, dimming, boost };

  void seeSetting(const std::string& key, std::string_view value);
  void seeTable(Microseconds time, DisplayNumber display);
  void seeBeginning(Microseconds time, DisplayNumber display, Effect effect);
  void seeBoost(Microseconds time, DisplayNumber display);
  Microseconds forgotAt() const;
  bool isOfUser(Microseconds time, DisplayNumber display) const;
  bool isAllowed(Effect effect) const;
  std::set<std::int64_t> levelsOf(DisplayNumber display) const;
  Effect effectOn(DisplayNumber display) const;

  const MenuReading& menu;
  const GammaCurves& gamma;
  const RestoreTimes& restores;
  std::map<DisplayNumber, Effect> effects;
  /// The displays that were dimmed while they were boosted. The boost stays, and is stepped on with
  /// when the dimming has ended.
  std::set<DisplayNumber> keptBoosts;
  std::map<DisplayNumber, Microseconds> movedAt;
  std::map<DisplayNumber, Microseconds> refusedAt;
  /// The settings that are off.
  std::set<std::string> off;
};

}  // namespace brivane::judge
