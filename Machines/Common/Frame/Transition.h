#pragma once

#include "BrivaneCore/Support/Time.h"
#include "BrivaneUI/DisplayList.h"
#include "BrivaneUI/Frame/HUDWindow.h"

namespace brivane {

/// The duration of a HUD's change from one picture to another.
constexpr double contentChangeSeconds = 0.14;

/// A picture between two others, `progress` from 0 to 1: bars grow, symbols cross-fade, all else is
/// the new picture's. Pictures of different parts change at once.
DisplayList between(const DisplayList& from, const DisplayList& to, double progress);

/// The starting picture for another change in the middle of this one: bars at their current length,
/// symbols already the new ones, so that the parts are those of one picture.
DisplayList interrupted(const DisplayList& from, const DisplayList& to, double progress);

/// Something that takes its time; without a duration it is over at once.
struct Animation {
  Instant start;
  double durationSeconds = 0;

  /// From 0 to 1, evenly.
  double progress(Instant now) const;
};

/// A window's alpha.
struct Fade : Animation {
  double from = 1;
  double to = 1;
  AnimationTiming timing = AnimationTiming::linear;

  double alpha(Instant now) const;
};

/// A HUD's picture, which changes fast at first.
struct Transition : Animation {
  DisplayList from;
  DisplayList to;

  /// Sets out for another picture from where this one is.
  void turnTo(const DisplayList& picture, double seconds, Instant now);
  DisplayList picture(Instant now) const;
};

}  // namespace brivane
