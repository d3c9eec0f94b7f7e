#include "Tools/BrivaneDesk/Judge/StoredLevels.h"

#include <algorithm>

namespace brivane::judge {
namespace {

/// A level is stored when the reads of all displays are over that were asked together.
constexpr Microseconds seenFor{10'000'000};
/// A move waits at most 70 ms to be written, and for sets to other displays.
constexpr Microseconds sliderWait{500'000};

}  // namespace

StoredLevels::StoredLevels(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
                           const RestoreTimes& restoreTimes)
    : Checker(knownDesk, allBreaches, "a level is stored only when it was set or seen"),
      restores(restoreTimes) {}

void StoredLevels::see(const TraceEvent& event) {
  if (desk.isSecondProgram) return;
  if (unexplained && event.time > unexplained->time) {
    breach(unexplained->time,
           "brightness." + unexplained->identity + " = " + std::to_string(unexplained->level));
    unexplained.reset();
  }
  if (const auto* const set = event.as<BusSet>()) {
    if (halves.see(event.time, *set) == SetHalves::Half::second) {
      lastSet = {event.time, set->display};
    }
  } else if (const auto* const read = event.as<BusRead>()) {
    seeReading(event, *read);
  } else if (const auto* const setting = event.as<SettingChanged>()) {
    if (setting->key.starts_with("brightness.")) seeLevel(event, *setting);
  } else if (event.as<ProgramStarted>() != nullptr) {
    awaiting.clear();
    forgotAt.reset();
  } else if (restores.forgotAt() != forgotAt) {
    forgotAt = restores.forgotAt();
    awaitRestores();
  } else if (const auto* const moved = event.as<SliderMoved>()) {
    lastMove = {event.time, moved->value};
  } else if (const auto* const table = event.as<GammaTaken>()) {
    seeTable(event, table->display);
  }
}

void StoredLevels::seeReading(const TraceEvent& event, const BusRead& read) {
  if (!read.luminance) return;
  auto& readings = seen[read.display];
  while (!readings.empty() && event.time - readings.front().time > seenFor) readings.pop_front();
  readings.push_back({event.time, percentOf(*read.luminance)});
}

void StoredLevels::seeLevel(const TraceEvent& event, const SettingChanged& setting) {
  if (desk.mayMistakeDisplays()) return;
  const std::string identity(setting.key.substr(setting.key.find('.') + 1));
  const auto level = desk.levels.find(identity);
  if (level == desk.levels.end()) return;
  if (wasSet(event.time, identity)) {
    // A restore sets the stored level.
    if (lastSet && desk.replacedLevel == level->second) {
      for (const auto display : desk.displaysOf(lastSet->display)) awaiting.erase(display);
    }
    return;
  }
  if (isOfServices(identity) || wasSeen(level->second, identity) || isCarriedOver(event, setting)) {
    return;
  }
  // Dimming begins at 0, a boost at 100: the user's choice, also instead of a level that has yet to
  // be restored. The table comes before or after it; a slider may ask in vain for an effect.
  if (isBeyondRange(event.time, level->second)) return;
  const bool isEnd = level->second == 0 || level->second == 100;
  if (isEnd && lastTable.time == event.time && isOf(lastTable.display, identity)) return;
  if (isEnd) {
    unexplained = {event.time, identity, level->second};
  } else {
    breach(event.time, std::string(setting.key) + " = " + std::to_string(level->second));
  }
}

void StoredLevels::seeTable(const TraceEvent& event, DisplayNumber display) {
  lastTable = {event.time, display};
  if (unexplained && isOf(display, unexplained->identity)) unexplained.reset();
}

/// The program has forgotten the displays and will restore those that have a stored level.
void StoredLevels::awaitRestores() {
  for (const auto& [number, display] : desk.displays) {
    const bool isRestored = display.isAttached && !display.described->isBuiltIn &&
                            desk.levels.contains(display.identity);
    if (isRestored) awaiting.insert(number);
  }
}

/// A program that can't read its settings restores nothing.
bool StoredLevels::isAwaiting(DisplayNumber display) const {
  return awaiting.contains(display) && !desk.faults.contains("UserDefaults.object");
}

bool StoredLevels::wasSet(Microseconds time, const std::string& identity) const {
  if (!lastSet || lastSet->time != time) return false;
  return std::ranges::any_of(desk.displaysOf(lastSet->display),
                             [&](DisplayNumber display) { return isOf(display, identity); });
}

/// Whether a slider was just moved below 0 for a stored 0, above 100 for 100.
bool StoredLevels::isBeyondRange(Microseconds time, std::int64_t level) const {
  if (!lastMove || desk.passed(lastMove->first, time) > sliderWait) return false;
  return (level == 0 && lastMove->second < 0) || (level == 100 && lastMove->second > 100);
}

/// The first start takes over the settings of the maker's earlier application.
bool StoredLevels::isCarriedOver(const TraceEvent& event, const SettingChanged& setting) const {
  const auto& earlier = desk.description.tallowinDefaults;
  return event.time == desk.startedAt && earlier && earlier->values.contains(setting.key);
}

bool StoredLevels::isOf(DisplayNumber display, const std::string& identity) const {
  const auto* const known = desk.find(display);
  return known != nullptr && known->identity == identity;
}

bool StoredLevels::wasSeen(std::int64_t level, const std::string& identity) const {
  return std::ranges::any_of(desk.displays, [&](const auto& entry) {
    const auto& [number, display] = entry;
    // A queued read of a display that is gone may reach the only bus. The level is kept under the
    // identity of no panel, as a panel that is gone has no numbers.
    const bool isOfGone = !display.isAttached && identity == "0.0.0";
    if ((display.identity != identity && !isOfGone) || isAwaiting(number)) return false;
    return std::ranges::any_of(seen, [&](const auto& readings) {
      const auto isLevel = [&](const Seen& reading) { return reading.percent == level; };
      return desk.mayBeBusOf(readings.first, number) &&
             std::ranges::any_of(readings.second, isLevel);
    });
  });
}

bool StoredLevels::isOfServices(const std::string& identity) const {
  return std::ranges::any_of(desk.displays, [&](const auto& entry) {
    return entry.second.identity == identity && entry.second.serviceLevel;
  });
}

}  // namespace brivane::judge
