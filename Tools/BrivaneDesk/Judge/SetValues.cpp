#include "Tools/BrivaneDesk/Judge/SetValues.h"

#include <algorithm>

namespace brivane::judge {
namespace {

bool isRawOfSomePercent(std::int64_t value, std::int64_t maximum) {
  if (value > maximum) return false;
  const std::int64_t near = percentOf({value, maximum});
  for (std::int64_t percent = std::max<std::int64_t>(near - 1, 0); percent <= near + 1; ++percent) {
    if (rawOf(percent, maximum) == value) return true;
  }
  return false;
}

}  // namespace

SetValues::SetValues(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches,
              "a set carries its percent of the maximum last read or stored") {}

void SetValues::see(const TraceEvent& event) {
  if (const auto* const set = event.as<BusSet>()) {
    seeSet(event.time, *set);
    return;
  }
  constexpr std::string_view prefix = "brightness.";
  const auto* const setting = event.as<SettingChanged>();
  if (setting != nullptr && setting->key.starts_with(prefix)) {
    seeLevel(event, setting->key.substr(prefix.size()));
  }
}

void SetValues::seeSet(Microseconds time, const BusSet& set) {
  if (halves.see(time, set) == SetHalves::Half::second) {
    ended = {time, set};
    return;
  }
  const auto maximums = desk.knownMaximums(set.display);
  const bool isKnown = std::ranges::any_of(
      maximums, [&](std::int64_t maximum) { return isRawOfSomePercent(set.value, maximum); });
  if (!isKnown) breach(time, nameOf(set.display) + " gets " + std::to_string(set.value));
}

/// The level that is stored at the moment that a set ends. Where several displays share the bus, it
/// may be what was read for another one.
void SetValues::seeLevel(const TraceEvent& event, std::string_view identity) {
  if (!ended || ended->time != event.time) return;
  const bool isOfAll = std::ranges::all_of(
      desk.displaysOf(ended->set.display),
      [&](DisplayNumber display) { return desk.find(display)->identity == identity; });
  if (!isOfAll) return;
  const auto level = desk.levels.find(identity);
  const auto maximums = desk.knownMaximums(ended->set.display);
  const bool isSo =
      level != desk.levels.end() && std::ranges::any_of(maximums, [&](std::int64_t maximum) {
        return rawOf(level->second, maximum) == ended->set.value;
      });
  if (!isSo) {
    breach(event.time, nameOf(ended->set.display) + " got " + std::to_string(ended->set.value) +
                           " and another level is stored");
  }
  ended.reset();
}

}  // namespace brivane::judge
