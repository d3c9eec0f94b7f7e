// A set's first message comes 10 ms after the program decides on it, in the same task.
#include "Tools/BrivaneDesk/Judge/SetOwners.h"

#include <algorithm>
#include <cmath>

namespace brivane::judge {
namespace {

/// From a key's press to the first step of its sweep.
constexpr Microseconds firstSweepStep{350'000};
/// A move waits at most 70 ms to be written, and for sets to other displays.
constexpr Microseconds longestSliderWait{500'000};
constexpr std::int64_t keyStep = 5;

}  // namespace

SetOwners::SetOwners(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
                     const MenuReading& menuReading, const RestoreTimes& restoreTimes)
    : Checker(knownDesk, allBreaches,
              "each set belongs to a key, a slider, a request or a restore"),
      menu(menuReading),
      restores(restoreTimes) {}

void SetOwners::see(const TraceEvent& event) {
  if (const auto* const moved = event.as<SliderMoved>()) {
    const auto display = menu.displayOfSlider(moved->index);
    if (!display) return;
    auto& last = moves[*display];
    last.push_back({event.time, moved->value});
    if (last.size() > 2) last.erase(last.begin());
  } else if (const auto* const step = event.as<StepTaken>()) {
    if (step->words.starts_with("request ")) requestedAt = event.time;
  } else if (const auto* const set = event.as<BusSet>()) {
    if (halves.see(event.time, *set) == SetHalves::Half::second || desk.isSecondProgram) return;
    const Microseconds cause = event.time - setWait;
    const bool isOwned = isOfKeys(cause, *set) || isOfSlider(cause, *set) || isOfRequest(cause) ||
                         isOfRestore(cause, *set);
    if (!isOwned && !desk.mayMistakeDisplays()) {
      breach(event.time, nameOf(set->display) + " gets " + std::to_string(set->value) +
                             ", for which nobody asked");
    }
  }
}

bool SetOwners::isOfKeys(Microseconds cause, const BusSet& set) const {
  const auto pointed = desk.underPointer();
  if (!pointed || !desk.mayBeBusOf(set.display, *pointed) || !desk.pressedAt) return false;
  if (desk.isSweeping && cause >= *desk.pressedAt + firstSweepStep) return true;
  if (cause != *desk.pressedAt) return false;
  if (desk.isPressFine) return true;
  // The first step of a press ends on the grid.
  for (std::int64_t percent = 0; percent <= 100; percent += keyStep) {
    if (hasLevel(set, percent)) return true;
  }
  return false;
}

bool SetOwners::isOfSlider(Microseconds cause, const BusSet& set) const {
  return std::ranges::any_of(moves, [&](const auto& displayMoves) {
    if (!desk.mayBeBusOf(set.display, displayMoves.first)) return false;
    return std::ranges::any_of(displayMoves.second, [&](const Move& move) {
      if (move.time > cause || desk.passed(move.time, cause) > longestSliderWait) return false;
      return hasLevel(set, std::llround(move.value)) ||
             hasLevel(set, static_cast<std::int64_t>(std::floor(move.value)));
    });
  });
}

bool SetOwners::isOfRequest(Microseconds cause) const {
  return requestedAt && *requestedAt == cause;
}

bool SetOwners::isOfRestore(Microseconds cause, const BusSet& set) const {
  if (!restores.isUnderWay(cause)) return false;
  return std::ranges::any_of(desk.displaysOf(set.display), [&](DisplayNumber display) {
    const auto stored = desk.levels.find(desk.find(display)->identity);
    return stored != desk.levels.end() && hasLevel(set, stored->second);
  });
}

bool SetOwners::hasLevel(const BusSet& set, std::int64_t percent) const {
  return std::ranges::any_of(desk.knownMaximums(set.display), [&](std::int64_t maximum) {
    return rawOf(percent, maximum) == set.value;
  });
}

}  // namespace brivane::judge
