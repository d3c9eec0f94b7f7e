#pragma once

#include <optional>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/SetHalves.h"

namespace brivane::judge {

/// The HUD shows the newest state over its display, for 1.2 s, or 4 s while connecting, and then
/// fades for 0.28 s. A level on another display than the last appears at once instead of moving
/// there, and a screen reader gets what has been shown for half a second.
class HUDTimes : public Checker {
 public:
  HUDTimes(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches);

  void see(const TraceEvent& event) override;

 private:
  void seeShown(Microseconds time, const HUDShown& shown);
  void seeMove(Microseconds time, const HUDShown& shown);
  void seeFade(Microseconds time);
  void seeGone(Microseconds time);
  void seeLevelStored(const TraceEvent& event, const SettingChanged& setting);
  void look(Microseconds time);
  void hide();
  bool isOverPointer() const;

  bool isShown = false;
  bool isConnecting = false;
  std::int64_t level = 0;
  Microseconds shownAt{0};
  Microseconds fadesAt{0};
  std::optional<Microseconds> fadingSince;
  std::optional<Rect> frame;
  std::optional<Microseconds> placedAt;
  /// When displays last came, went or moved, and the HUD perhaps with them.
  Microseconds arrangedAt{0};
  /// When the HUD began to show what it shows.
  Microseconds changedAt{0};
  SetHalves halves;
  /// A level that a key has set, and that the HUD shows at the same moment.
  struct Due {
    Microseconds time{0};
    std::int64_t level = 0;
  };
  std::optional<Due> due;
  std::optional<Microseconds> setEndedAt;
  /// When another program asked for a level, which the HUD doesn't show.
  std::optional<Microseconds> requestedAt;
  DisplayNumber setDisplay = 0;
};

}  // namespace brivane::judge
