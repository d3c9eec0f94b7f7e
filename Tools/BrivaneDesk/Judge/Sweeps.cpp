#include "Tools/BrivaneDesk/Judge/Sweeps.h"

namespace brivane::judge {
namespace {

/// A set keeps the main thread for so long before its level is shown.
constexpr Microseconds setDuration{20'000};
constexpr Microseconds sweepDelay{350'000};
constexpr std::int64_t longestStep = 30;
/// Without Shift; each step is a multiple of five.
constexpr double pointsPerSecond = 100 / 1.2;
constexpr double grid = 5;
/// Between a step and its level in the HUD.
constexpr Microseconds lateness{60'000};
/// A level that is read again is known by then.
constexpr Microseconds unrest{10'000'000};

/// Whether the next step may start from another level than the last one showed.
bool disturbsSweep(const TraceEvent& event) {
  const auto* const table = event.as<GammaTaken>();
  const auto* const setting = event.as<SettingChanged>();
  // A monitor that has not answered yet may get a set reckoned with its stored maximum, while its
  // first reading is on its way, which then counts.
  if (setting != nullptr && setting->key.starts_with("ddc.")) return true;
  return event.isFault || (table != nullptr && !table->isTaken) ||
         event.as<MonitorChanged>() != nullptr || event.as<DisplayPlugged>() != nullptr ||
         event.as<NoticeDelivered>() != nullptr || event.as<SliderMoved>() != nullptr ||
         event.as<SecondProgramBegins>() != nullptr;
}

}  // namespace

Sweeps::Sweeps(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "a sweep is its key's, goes one way and ends with its key") {}

void Sweeps::see(const TraceEvent& event) {
  if (const auto* const shown = event.as<HUDShown>()) {
    if (shown->level && !shown->isRedrawn) seeLevel(event.time, *shown->level);
  } else if (event.as<HUDPlaced>() != nullptr) {
    last.reset();
  } else if (disturbsSweep(event)) {
    disturbedAt = event.time;
    last.reset();
  } else if (const auto* const step = event.as<StepTaken>()) {
    if (step->words.starts_with("request ")) requestedAt = event.time;
  }
}

void Sweeps::seeLevel(Microseconds time, std::int64_t level) {
  if (requestedAt && time - *requestedAt <= setDuration) return;
  if (pressOfLast != desk.pressedAt) last.reset();
  pressOfLast = desk.pressedAt;
  const bool isOfPress = desk.pressedAt && time - *desk.pressedAt <= setDuration;
  if (!isOfPress) seeStepOfSweep(time, level);
  last = {time, level};
}

void Sweeps::seeStepOfSweep(Microseconds time, std::int64_t level) {
  if (!desk.isSweeping) {
    breach(time, "level " + std::to_string(level) + " is shown while no key sweeps");
    return;
  }
  if (time < desk.pressedAt.value_or(time) + sweepDelay) {
    breach(time, "level " + std::to_string(level) + " is shown before the sweep begins");
  }
  const bool isDisturbed = disturbedAt && time - *disturbedAt < unrest;
  if (!last || isDisturbed) return;
  // A step that ends a dimming or boost; the next one starts from the monitor's own level, which
  // its buttons may have changed meanwhile.
  if (last->level == 0 || last->level == 100) return;
  const std::int64_t change = desk.isPressUp ? level - last->level : last->level - level;
  const double elapsed = toSeconds(time - last->time + lateness);
  const bool isTooFast = static_cast<double>(change) > pointsPerSecond * elapsed + grid;
  if (change < 0 || change > longestStep || isTooFast) {
    breach(time, "level " + std::to_string(level) + " is shown after " +
                     std::to_string(last->level) + " in a sweep " +
                     (desk.isPressUp ? "upwards" : "downwards"));
  }
}

}  // namespace brivane::judge
