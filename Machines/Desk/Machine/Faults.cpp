#include "Machines/Desk/Machine/Faults.h"

#include <algorithm>

#include "BrivaneCore/Support/Fatal.h"
#include "Machines/Desk/File/FaultCalls.h"

namespace brivane {

bool Faults::strikes(std::string_view call, const Describe& what) {
  if (!std::ranges::binary_search(faultCalls(), call)) {
    fatal("the call " + std::string(call) + " is not in the list of calls that can fail");
  }
  if (failsAlways) return true;
  const bool fails = isPlanned(call) || isNext(call);
  if (callTrace) callTrace(call, fails);
  if (fails && tracer) {
    tracer->note([&] { return "fault " + std::string(call) + (what ? ": " + what() : ""); });
  }
  return fails;
}

bool Faults::isPlanned(std::string_view call) {
  const auto planned = plan.find(call);
  if (planned == plan.end()) return false;
  const std::lock_guard lock(mutex);
  const auto occurrence = ++occurrences[planned->first];
  return planned->second.contains(occurrence);
}

void Faults::failNext(std::string_view call, std::int64_t times, std::int64_t spared) {
  const std::lock_guard lock(mutex);
  failing[std::string(call)] = {times, spared};
  hasFailing = true;
}

bool Faults::isNext(std::string_view call) {
  if (!hasFailing) return false;
  const std::lock_guard lock(mutex);
  const auto found = failing.find(call);
  if (found == failing.end() || found->second.failing == 0) return false;
  auto& coming = found->second;
  const bool fails = coming.spared == 0;
  --(fails ? coming.failing : coming.spared);
  return fails;
}

}  // namespace brivane
