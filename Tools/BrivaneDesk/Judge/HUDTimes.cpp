#include "Tools/BrivaneDesk/Judge/HUDTimes.h"

namespace brivane::judge {
namespace {

constexpr Microseconds levelTime{1'200'000};
constexpr Microseconds connectingTime{4'000'000};
constexpr Microseconds fadeTime{280'000};
constexpr Microseconds quietTime{500'000};
/// The main thread may be busy with sets to all displays.
constexpr Microseconds lateness{300'000};
constexpr double cardWidth = 360;
constexpr double cardHeight = 54;
constexpr double aboveEdge = 130;

}  // namespace

HUDTimes::HUDTimes(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "the HUD shows the newest state for its time") {}

void HUDTimes::see(const TraceEvent& event) {
  // A command shows no HUD, and its times run ahead of the program's.
  if (desk.isSecondProgram || event.as<SecondProgramEnds>() != nullptr) return;
  look(event.time);
  if (const auto* const shown = event.as<HUDShown>()) {
    seeShown(event.time, *shown);
  } else if (event.as<HUDFades>() != nullptr) {
    seeFade(event.time);
  } else if (event.as<HUDGone>() != nullptr) {
    seeGone(event.time);
  } else if (const auto* const placed = event.as<HUDPlaced>()) {
    frame = placed->frame;
    placedAt = event.time;
  } else if (event.as<DisplayPlugged>() != nullptr || event.as<DisplayFramed>() != nullptr ||
             event.as<ScreenChanged>() != nullptr) {
    arrangedAt = event.time;
  } else if (event.as<HUDSaid>() != nullptr) {
    if (event.time < changedAt + quietTime) breach(event.time, "the HUD speaks before it rests");
  } else if (const auto* const set = event.as<BusSet>()) {
    const bool isEnd = halves.see(event.time, *set) == SetHalves::Half::second;
    if (isEnd) {
      setEndedAt = event.time;
      setDisplay = set->display;
    }
  } else if (const auto* const step = event.as<StepTaken>()) {
    if (step->words.starts_with("request set ")) requestedAt = event.time;
  } else if (const auto* const setting = event.as<SettingChanged>()) {
    seeLevelStored(event, *setting);
  } else if (!desk.isRunning) {
    hide();
  }
}

void HUDTimes::seeShown(Microseconds time, const HUDShown& shown) {
  if (shown.isRedrawn) return;
  seeMove(time, shown);
  isShown = true;
  isConnecting = !shown.level;
  level = shown.level.value_or(0);
  shownAt = time;
  fadesAt = time + (isConnecting ? connectingTime : levelTime);
  fadingSince.reset();
  if (isConnecting || isOverPointer()) return;
  breach(time, "level " + std::to_string(level) + " is not shown over the pointer's display");
}

void HUDTimes::seeMove(Microseconds time, const HUDShown& shown) {
  // The HUD also goes with a display that is moved.
  const bool isElsewhere = isShown && placedAt == time && arrangedAt < shownAt;
  const bool isNew = !isShown || isConnecting == shown.level.has_value() ||
                     level != shown.level.value_or(0) || isElsewhere;
  if (isNew) changedAt = time;
  if (shown.level && shown.isMoving && isElsewhere) {
    breach(time, "level " + std::to_string(*shown.level) + " moves from another display's");
  }
}

void HUDTimes::seeFade(Microseconds time) {
  if (isShown && time < fadesAt) breach(time, "the HUD fades before its time");
  fadingSince = time;
}

/// While connecting it may also be dismissed.
void HUDTimes::seeGone(Microseconds time) {
  const bool hasFaded = fadingSince && time >= *fadingSince + fadeTime;
  if (isShown && !hasFaded && !isConnecting) breach(time, "the HUD goes before its time");
  hide();
}

/// The level that is stored when a set ends for which a key was pressed; another one of that moment
/// was read for a twin.
void HUDTimes::seeLevelStored(const TraceEvent& event, const SettingChanged& setting) {
  const bool isOfSet = setEndedAt == event.time && setting.key.starts_with("brightness.");
  if (!isOfSet || !desk.pressedAt || due) return;
  const Microseconds cause = event.time - 2 * setWait;
  const bool isOfPress = *desk.pressedAt == cause && requestedAt != cause;
  const auto pointed = desk.underPointer();
  const std::string_view identity = setting.key.substr(setting.key.find('.') + 1);
  const auto* const display = desk.find(setDisplay);
  if (display == nullptr || display->identity != identity) return;
  if (!isOfPress || !pointed || !desk.mayBeBusOf(setDisplay, *pointed)) return;
  const auto stored = desk.levels.find(identity);
  // A restore may end at that moment, too.
  const bool isRestore = stored != desk.levels.end() && desk.replacedLevel == stored->second;
  if (stored != desk.levels.end() && !isRestore) due = {event.time, stored->second};
}

/// What should have happened before this time.
void HUDTimes::look(Microseconds time) {
  if (due && time > due->time) {
    const bool isNewest = isShown && !isConnecting && shownAt == due->time && level == due->level;
    if (!isNewest) breach(due->time, "level " + std::to_string(due->level) + " is not shown");
    due.reset();
  }
  if (!isShown) return;
  const Microseconds end = fadingSince ? *fadingSince + fadeTime : fadesAt;
  if (time <= end || desk.passed(end, time) <= lateness) return;
  breach(time, fadingSince ? "the HUD has faded and is there" : "the HUD shows an old state");
  hide();
}

void HUDTimes::hide() {
  isShown = false;
  fadingSince.reset();
}

bool HUDTimes::isOverPointer() const {
  const auto pointed = desk.underPointer();
  if (!pointed || !frame) return true;
  const Rect& screen = desk.find(*pointed)->frame;
  const Rect wanted{screen.x + screen.width / 2 - cardWidth / 2, screen.y + aboveEdge, cardWidth,
                    cardHeight};
  return *frame == wanted;
}

}  // namespace brivane::judge
