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
    knownArrangement = arrangement();
    lastForgotAt.reset();
  } else if (const auto* const notice = event.as<NoticeDelivered>()) {
    if (notice->kind == NoticeDelivered::Kind::wake) {
      forget(event.time, Microseconds(0));
    } else if (auto current = arrangement(); current != knownArrangement) {
      knownArrangement = std::move(current);
      forget(event.time, restoreDelay);
    }
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

/// The screens with their frames, in whole numbers.
std::string RestoreTimes::arrangement() const {
  std::string text;
  for (const auto& [number, display] : desk.displays) {
    if (!display.isAttached || !display.hasScreen) continue;
    const Rect& frame = display.frame;
    text += (display.hasNumber ? std::to_string(number) : "0") + ":";
    for (const double side : {frame.x, frame.y, frame.width, frame.height}) {
      text += std::to_string(static_cast<std::int64_t>(side)) + ",";
    }
  }
  return text;
}

}  // namespace brivane::judge
