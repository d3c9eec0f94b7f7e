#include "Tools/BrivaneDesk/Judge/SetPairs.h"

namespace brivane::judge {
namespace {

bool isOfReads(const TraceEvent& event) {
  return event.as<BusGet>() != nullptr || event.as<BusRead>() != nullptr;
}

}  // namespace

SetPairs::SetPairs(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "a set goes out twice, 10 ms before each message") {}

void SetPairs::see(const TraceEvent& event) {
  if (event.as<FaultStruck>() != nullptr || isOfReads(event)) return;
  if (const auto* const set = event.as<BusSet>()) {
    seeSet(event.time, *set);
  } else if (halves.isOpen()) {
    breach(event.time, "a set that went out once");
    halves.forget();
  }
  // A command's times run ahead of the program's.
  if (event.as<SecondProgramBegins>() != nullptr) begunAt = event.time;
  mainThreadAt = event.as<SecondProgramEnds>() != nullptr ? begunAt : event.time;
}

void SetPairs::seeSet(Microseconds time, const BusSet& set) {
  if (!set.isWellFormed) breach(time, nameOf(set.display) + " gets a set that is no message");
  const bool wasOpen = halves.isOpen();
  const auto half = halves.see(time, set);
  if (half == SetHalves::Half::second) return;
  if (wasOpen) breach(time, nameOf(set.display) + " gets a set before the last went out twice");
  if (time < mainThreadAt + setWait) {
    breach(time, nameOf(set.display) + " gets a set without the wait before it");
  }
}

}  // namespace brivane::judge
