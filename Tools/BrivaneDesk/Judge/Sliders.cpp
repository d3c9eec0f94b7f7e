#include "Tools/BrivaneDesk/Judge/Sliders.h"

#include <algorithm>
#include <cmath>

namespace brivane::judge {
namespace {

/// The program leaves a slider alone for 0.4 s after a write, which follows a move within 70 ms.
constexpr Microseconds rest{400'000};
/// A move waits at most 70 ms to be written, and for sets to other displays.
constexpr Microseconds longestWait{500'000};

}  // namespace

Sliders::Sliders(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
                 const MenuReading& menuReading, const GammaCurves& gammaCurves)
    : Checker(knownDesk, allBreaches, "a slider is the user's, and ends effects"),
      menu(menuReading),
      gamma(gammaCurves) {}

void Sliders::see(const TraceEvent& event) {
  if (const auto* const moved = event.as<SliderMoved>()) {
    seeMove(event.time, *moved);
  } else if (const auto* const item = event.as<MenuItemShown>()) {
    seeItem(event.time, *item);
  } else if (event.as<MenuRebuilt>() != nullptr) {
    movedAt.clear();
    rebuiltAt = event.time;
  } else if (const auto* const set = event.as<BusSet>()) {
    if (!desk.isSecondProgram) seeSet(event.time, *set);
  }
}

/// At the end of its range a slider stays where it is; at the moment of a rebuild the one moves
/// that was there before.
void Sliders::seeMove(Microseconds time, const SliderMoved& moved) {
  if (rebuiltAt == time) return;
  const auto display = menu.displayOfSlider(moved.index);
  if (!display) return;
  const auto entry = menu.entryOf(*display);
  if (!entry) return;
  const double value = entry->slider.value_or(moved.value);
  const auto last = moves.find(*display);
  if (value != moved.value || (last != moves.end() && last->second.value == value)) return;
  movedAt[moved.index] = time;
  moves[*display] = {time, value};
}

void Sliders::seeItem(Microseconds time, const MenuItemShown& item) {
  if (!item.index || !item.item.starts_with("slider ")) return;
  const auto moved = movedAt.find(*item.index);
  if (moved == movedAt.end() || time >= moved->second + rest) return;
  breach(time, "item " + std::to_string(*item.index) + " moves under the user's hand");
}

void Sliders::seeSet(Microseconds time, const BusSet& set) {
  const auto move = moves.find(set.display);
  if (desk.busOf(set.display) != set.display) return;
  if (move == moves.end() || time > move->second.time + longestWait) return;
  const auto percent = std::llround(move->second.value);
  if (percent <= 0 || percent >= 100) return;
  const auto maximums = desk.knownMaximums(set.display);
  const bool isOfSlider = std::ranges::any_of(
      maximums, [&](std::int64_t maximum) { return rawOf(percent, maximum) == set.value; });
  const auto kind = gamma.curveOf(set.display).kind;
  using Kind = GammaCurves::Kind;
  const bool hasEffect = kind == Kind::dimmed || kind == Kind::bent || kind == Kind::gained;
  if (!isOfSlider || !hasEffect || gamma.hasRefusedRestore(set.display)) return;
  breach(time, nameOf(set.display) + " is set by its slider and keeps its effect");
}

}  // namespace brivane::judge
