#include "Tools/BrivaneDesk/Judge/RestoreTimes.h"

#include <algorithm>

namespace brivane::judge {
namespace {

/// From a restore's start to its last set: monitors that answer late are restored as long as the
/// program waits for them, 180 s; each set comes after the reads of all displays.
constexpr Microseconds longestRestore{200'000'000};
constexpr Microseconds restoreDelay{2'000'000};

}  // namespace

void RestoreTimes::see(const TraceEvent& event) {
  if (desk.isSecondProgram) return;
  if (event.as<ProgramStarted>() != nullptr) {
    starts = {event.time};
    lastForgotAt.reset();
  } else if (const auto* const notice = event.as<NoticeDelivered>()) {
    const bool isWake = notice->kind == NoticeDelivered::Kind::wake;
    if (desk.isForgetting) forget(event.time, isWake ? Microseconds(0) : restoreDelay);
  } else if (const auto* const step = event.as<StepTaken>()) {
    const bool isRestore = step->words == "menu choose \"Restore Saved Brightness\"";
    if (isRestore) begin(event.time);
  }
}

void RestoreTimes::forget(Microseconds time, Microseconds untilRestore) {
  begin(time + untilRestore);
  lastForgotAt = time;
}

void RestoreTimes::begin(Microseconds start) {
  std::erase_if(starts, [&](Microseconds earlier) { return start - earlier > longestRestore; });
  starts.push_back(start);
}

bool RestoreTimes::isUnderWay(Microseconds time) const {
  return std::ranges::any_of(
      starts, [&](Microseconds start) { return start <= time && time - start <= longestRestore; });
}

}  // namespace brivane::judge
