#pragma once

#include <map>
#include <optional>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/GammaCurves.h"
#include "Tools/BrivaneDesk/Judge/MenuReading.h"

namespace brivane::judge {

/// A slider is the user's as long as it moves, and a set that it asks for finds no effect in force.
class Sliders : public Checker {
 public:
  Sliders(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
          const MenuReading& menuReading, const GammaCurves& gammaCurves);

  void see(const TraceEvent& event) override;

 private:
  void seeMove(Microseconds time, const SliderMoved& moved);
  void seeItem(Microseconds time, const MenuItemShown& item);
  void seeSet(Microseconds time, const BusSet& set);

  const MenuReading& menu;
  const GammaCurves& gamma;
  /// By the slider's index.
  std::map<std::size_t, Microseconds> movedAt;
  std::optional<Microseconds> rebuiltAt;
  struct Move {
    Microseconds time{0};
    double value = 0;
  };
  std::map<DisplayNumber, Move> moves;
};

}  // namespace brivane::judge
