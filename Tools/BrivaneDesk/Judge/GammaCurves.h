#pragma once

#include <map>
#include <optional>

#include "Machines/Desk/Hardware/GammaTable.h"
#include "Tools/BrivaneDesk/Judge/Checker.h"

namespace brivane::judge {

/// Every table that the program puts in force is the one that it captured, that one dimmed or
/// boosted, or a straight line after it has captured one that was boosted; and it captures none
/// that it has dimmed or boosted itself, unless the display has refused to be restored. No slider
/// leaves a display dimmed and boosted.
class GammaCurves : public Checker {
 public:
  GammaCurves(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

  /// How the table in force was made of the captured one; `foreign`: it was not, but comes of
  /// another colour profile or process, behind the program's back.
  enum class Kind { captured, dimmed, bent, gained, straight, foreign, unknown };
  struct Curve {
    Kind kind = Kind::captured;
    /// The dimming's depth or the boost, 1 to 100; 0 for others.
    int amount = 0;
  };
  Curve curveOf(DisplayNumber display) const;
  /// Whether the display has refused to be restored, which the program doesn't notice, and has
  /// taken no table since.
  bool hasRefusedRestore(DisplayNumber display) const;
  /// Whether the display was dimmed while it was boosted: a key that goes down does so when the
  /// monitor's buttons have set 0 meanwhile. From then on the tables take turns.
  bool hasTwoEffects(DisplayNumber display) const;

 private:
  struct Display {
    GammaTable calibrated;
    GammaTable inForce;
    GammaTable captured;
    Curve curve;
    bool hasRefusedRestore = false;
    bool hasTwoEffects = false;
    /// A run before this one may have left its table in force.
    bool isOfEarlierRun = false;
  };

  void seeProfile(const ProfileChanged& changed);
  void seeForeign(const ForeignGamma& foreign);
  void seeCapture(const TraceEvent& event, DisplayNumber number);
  void seeTable(const TraceEvent& event, const GammaTaken& table);
  void seeEffects(const TraceEvent& event, Display& display, const GammaTaken& table, Curve curve);
  Curve recognised(DisplayNumber number, const Display& display, const GammaTaken& table) const;
  std::optional<GammaTable> wholeTable(DisplayNumber number, const Display& display, Curve curve,
                                       std::size_t count) const;

  std::map<DisplayNumber, Display> displays;
};

}  // namespace brivane::judge
