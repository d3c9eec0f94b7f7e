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
  const bool fails = isPlanned(call);
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

}  // namespace brivane
