#include "Tools/BrivaneDesk/Judge/Ranges.h"

#include <algorithm>

namespace brivane::judge {
namespace {

constexpr auto dimmingKey = "SubZeroDimming";
constexpr auto boostKey = "BrightenPastMaximum";
/// A move waits at most 70 ms to be written, and for sets to other displays.
constexpr Microseconds longestSliderWait{500'000};

}  // namespace

Ranges::Ranges(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
               const MenuReading& menuReading, const GammaCurves& gammaCurves,
               const RestoreTimes& restoreTimes)
    : Checker(knownDesk, allBreaches, "dimming begins at 0, a boost at 100, when they may"),
      menu(menuReading),
      gamma(gammaCurves),
      restores(restoreTimes) {
  for (const auto& [key, value] : desk.description.brivaneDefaults.values) {
    if (!value.asBoolean()) off.insert(key);
  }
}

void Ranges::see(const TraceEvent& event) {
  if (desk.isSecondProgram) return;
  if (const auto* const table = event.as<GammaTaken>()) {
    if (table->isTaken) seeTable(event.time, table->display);
  } else if (event.as<GammaCalibrated>() != nullptr || event.as<ProgramStarted>() != nullptr) {
    effects.clear();
    keptBoosts.clear();
  } else if (const auto* const moved = event.as<SliderMoved>()) {
    const auto display = menu.displayOfSlider(moved->index);
    if (display) movedAt[*display] = event.time;
  } else if (const auto* const set = event.as<BusSet>()) {
    if (!set->isAccepted) refusedAt[set->display] = event.time;
  } else if (const auto* const setting = event.as<SettingChanged>()) {
    seeSetting(std::string(setting->key), setting->value.value_or("true"));
  } else if (const auto* const step = event.as<StepTaken>()) {
    constexpr std::string_view words = "setting ";
    if (!step->words.starts_with(words)) return;
    const auto rest = step->words.substr(words.size());
    const auto value = rest.find(" = ");
    seeSetting(std::string(rest.substr(0, rest.find(' '))),
               value == std::string_view::npos ? "true" : rest.substr(value + 3));
  }
}

/// Any other value than false counts as allowing.
void Ranges::seeSetting(const std::string& key, std::string_view value) {
  if (value == "false") {
    off.insert(key);
  } else {
    off.erase(key);
  }
}

void Ranges::seeTable(Microseconds time, DisplayNumber display) {
  const Effect before = effects[display];
  const Effect now = effects[display] = effectOn(display);
  if (before == Effect::boost && now == Effect::dimming) keptBoosts.insert(display);
  const bool begins = now != Effect::none && now != before;
  if (begins && isOfUser(time, display)) seeBeginning(time, display, now);
}

void Ranges::seeBeginning(Microseconds time, DisplayNumber display, Effect effect) {
  const bool isDimming = effect == Effect::dimming;
  if (!isAllowed(effect)) {
    breach(time, nameOf(display) + (isDimming ? " is dimmed" : " is boosted") +
                     " though the setting is off");
  }
  if (!isDimming) seeBoost(time, display);
  const auto levels = levelsOf(display);
  if (!isDimming && keptBoosts.contains(display)) return;
  if (levels.empty() || levels.contains(isDimming ? 0 : 100)) return;
  breach(time, nameOf(display) + (isDimming ? " is dimmed at " : " is boosted at ") +
                   std::to_string(*levels.begin()));
}

/// The program looks for headroom when it has forgotten the displays.
void Ranges::seeBoost(Microseconds time, DisplayNumber display) {
  const auto& known = desk.displays.at(display);
  const bool isIntoHeadroom = gamma.curveOf(display).kind == GammaCurves::Kind::gained;
  if (known.headroomChangedAt.value_or(Microseconds(0)) >= forgotAt()) return;
  if (isIntoHeadroom == (known.headroom > 1)) return;
  breach(time, nameOf(display) + (isIntoHeadroom ? " is boosted into headroom that it lacks"
                                                 : " is boosted beside its headroom"));
}

/// When the program last forgot the displays.
Microseconds Ranges::forgotAt() const {
  return restores.forgotAt().value_or(desk.startedAt);
}

/// Tables are also written again after a wake.
bool Ranges::isOfUser(Microseconds time, DisplayNumber display) const {
  const auto moved = movedAt.find(display);
  if (moved != movedAt.end() && time <= moved->second + longestSliderWait) return true;
  return desk.underPointer() == display && desk.pressedAt == time;
}

/// A setting that can't be read counts as absent, and allows.
bool Ranges::isAllowed(Effect effect) const {
  if (desk.faults.contains("UserDefaults.object")) return true;
  return !off.contains(effect == Effect::dimming ? dimmingKey : boostKey);
}

/// What the program may take for the monitor's own level; nothing when that can't be told: for
/// displays that it may reach by another bus, for monitors that refuse sets or have not answered
/// since the program forgot them.
std::set<std::int64_t> Ranges::levelsOf(DisplayNumber display) const {
  const auto& known = desk.displays.at(display);
  const auto mayBeItsBus = [&](const auto& entry) {
    return entry.first != display && desk.mayBeBusOf(entry.first, display);
  };
  const auto refused = refusedAt.find(display);
  const bool isRefused = refused != refusedAt.end() && refused->second > known.readAt;
  if (known.described->isBuiltIn || known.serviceLevel || !known.luminance || isRefused ||
      known.readAt < std::max(forgotAt(), known.changedAt) || desk.busOf(display) != display ||
      std::ranges::any_of(desk.displays, mayBeItsBus)) {
    return {};
  }
  std::set<std::int64_t> levels = {percentOf(*known.luminance)};
  const auto stored = desk.levels.find(known.identity);
  if (stored != desk.levels.end()) levels.insert(stored->second);
  return levels;
}

Ranges::Effect Ranges::effectOn(DisplayNumber display) const {
  using Kind = GammaCurves::Kind;
  const auto kind = gamma.curveOf(display).kind;
  if (kind == Kind::dimmed) return Effect::dimming;
  return kind == Kind::bent || kind == Kind::gained ? Effect::boost : Effect::none;
}

}  // namespace brivane::judge
