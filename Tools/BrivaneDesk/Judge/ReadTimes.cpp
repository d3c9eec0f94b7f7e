#include "Tools/BrivaneDesk/Judge/ReadTimes.h"

#include <utility>

namespace brivane::judge {
namespace {

constexpr Microseconds replyWait{40'000};
constexpr int mostAttempts = 3;
/// The program waits 20 or 40 ms before it tries again, and for a set to the same monitor.
constexpr Microseconds longestPause{200'000};
/// From the first attempt to the end of the third.
constexpr Microseconds longestRead{300'000};

/// Whether reads may have been cut off here.
bool endsReads(const TraceEvent& event) {
  return event.as<ProgramStarted>() != nullptr || event.as<ProgramKilled>() != nullptr ||
         event.as<ProgramEnded>() != nullptr || event.as<SecondProgramBegins>() != nullptr ||
         event.as<SecondProgramEnds>() != nullptr;
}

}  // namespace

ReadTimes::ReadTimes(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "a read waits for its reply and is tried three times") {}

void ReadTimes::see(const TraceEvent& event) {
  if (endsReads(event) || event.isFault || !desk.faults.empty()) {
    reads.clear();
    unclearUntil = event.time + longestRead;
  }
  if (desk.isSecondProgram || !desk.isRunning || !desk.faults.empty()) return;
  look(event.time);
  if (const auto* const get = event.as<BusGet>()) {
    seeRequest(event.time, *get);
  } else if (const auto* const reply = event.as<BusRead>()) {
    seeReply(event.time, *reply);
  }
}

void ReadTimes::look(Microseconds time) {
  for (auto& entry : reads) {
    Read& read = entry.second;
    if (!read.failedAt || time <= *read.failedAt + longestPause) continue;
    if (!read.isUnclear) {
      breach(*read.failedAt, nameOf(entry.first) + " is asked only " +
                                 std::to_string(read.attempts) +
                                 (read.attempts == 1 ? " time" : " times"));
    }
    read = {};
  }
}

void ReadTimes::seeRequest(Microseconds time, const BusGet& get) {
  Read& read = reads[get.display];
  const bool isAnother = std::exchange(read.failedAt, std::nullopt).has_value();
  read.attempts = isAnother ? read.attempts + 1 : 1;
  if (!isAnother) read.isUnclear = time <= unclearUntil;
  read.requestedAt = time;
  if (!get.isAccepted) fail(time, get.display);
}

void ReadTimes::seeReply(Microseconds time, const BusRead& reply) {
  const Read& read = reads[reply.display];
  if (read.attempts == 0) return;
  if (time < read.requestedAt + replyWait) {
    breach(time, nameOf(reply.display) + " has its reply fetched too soon");
  }
  if (reply.luminance) {
    reads.erase(reply.display);
  } else {
    fail(time, reply.display);
  }
}

void ReadTimes::fail(Microseconds time, DisplayNumber display) {
  const Read& read = reads[display];
  if (read.attempts < mostAttempts || read.isUnclear) {
    reads[display].failedAt = time;
  } else {
    reads.erase(display);
  }
}

}  // namespace brivane::judge
