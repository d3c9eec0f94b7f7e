// The queue reads one display after the other; within a read no wait is longer than 60 ms.
#include "Tools/BrivaneDesk/Judge/OfflineTraffic.h"

#include <algorithm>

namespace brivane::judge {
namespace {

constexpr Microseconds longestWait{100'000};

}  // namespace

OfflineTraffic::OfflineTraffic(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "an offline display gets queued reads at most") {}

void OfflineTraffic::see(const TraceEvent& event) {
  if (desk.isSecondProgram) return;
  if (const auto* const set = event.as<BusSet>()) {
    seeTransfer(event.time, set->display, true);
  } else if (const auto* const get = event.as<BusGet>()) {
    seeTransfer(event.time, get->display, false);
  } else if (const auto* const read = event.as<BusRead>()) {
    seeTransfer(event.time, read->display, false);
  } else if (const auto* const plugged = event.as<DisplayPlugged>()) {
    if (plugged->isPlugged) absentSince.erase(plugged->display);
  } else if (event.as<ProgramStarted>() != nullptr) {
    absentSince.clear();
    learnOfAll(event.time);
  } else if (const auto* const notice = event.as<NoticeDelivered>()) {
    if (notice->kind == NoticeDelivered::Kind::screenParameters) learnOfAll(event.time);
  }
}

/// A display without a screen is in no arrangement, and goes unnoticed.
void OfflineTraffic::learnOfAll(Microseconds time) {
  for (const auto& [number, display] : desk.displays) {
    if (!display.isAttached && display.hasScreen) absentSince.emplace(number, time);
  }
}

void OfflineTraffic::seeTransfer(Microseconds time, DisplayNumber display, bool isSet) {
  const auto absent = absentSince.find(display);
  if (absent != absentSince.end() && !desk.mayMistakeDisplays()) {
    const bool isQueued = time - std::max(absent->second, lastReadAt) <= longestWait;
    if (isSet) breach(time, nameOf(display) + " gets a set");
    if (!isSet && !isQueued) breach(time, nameOf(display) + " is read");
  }
  if (!isSet) lastReadAt = time;
}

}  // namespace brivane::judge
