#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

/// Makes calls of the Machine seam fail at chosen occurrences. Each call that the plan names is
/// counted from 1, per machine. Any thread.
class Faults {
 public:
  /// Failures are noted in the trace, if there is one.
  explicit Faults(FaultPlan faultPlan, std::shared_ptr<const Tracer> hardwareTracer = nullptr)
      : plan(std::move(faultPlan)), tracer(std::move(hardwareTracer)) {}

  /// Makes the text of what a call would have done.
  using Describe = std::function<std::string()>;

  /// Counts one occurrence of the call; whether it fails. For the trace of a call that would change
  /// something `what` says what.
  bool strikes(std::string_view call, const Describe& what = nullptr);

  /// Called for every call and whether it fails; for before the first call.
  using CallTrace = std::function<void(std::string_view call, bool fails)>;
  void setCallTrace(CallTrace newCallTrace) { callTrace = std::move(newCallTrace); }

  /// From now on every call fails, and none is counted or traced.
  void failAlways() { failsAlways = true; }

 private:
  bool isPlanned(std::string_view call);

  const FaultPlan plan;
  const std::shared_ptr<const Tracer> tracer;
  CallTrace callTrace;
  std::atomic<bool> failsAlways = false;
  std::mutex mutex;
  std::map<std::string, std::int64_t, std::less<>> occurrences;
};

}  // namespace brivane
