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

/// Makes seam calls fail: at planned occurrences, counted from 1 for each call and machine, and the
/// next ones on request. Any thread.
class Faults {
 public:
  /// Failures are traced, if there is a tracer.
  explicit Faults(FaultPlan faultPlan, std::shared_ptr<const Tracer> hardwareTracer = nullptr)
      : plan(std::move(faultPlan)), tracer(std::move(hardwareTracer)) {}

  /// Describes what a call would have done.
  using Describe = std::function<std::string()>;

  /// Counts one occurrence of the call, and returns whether it fails. `what`, for calls that change
  /// something, describes the change in the trace.
  bool strikes(std::string_view call, const Describe& what = nullptr);

  /// Makes `times` occurrences of the call fail, once `spared` have not; 0: none.
  void failNext(std::string_view call, std::int64_t times, std::int64_t spared);

  /// Called for every call, with whether it fails. Set it before the first call.
  using CallTrace = std::function<void(std::string_view call, bool fails)>;
  void setCallTrace(CallTrace newCallTrace) { callTrace = std::move(newCallTrace); }

  /// Makes every later call fail, uncounted and untraced.
  void failAlways() { failsAlways = true; }

 private:
  bool isPlanned(std::string_view call);
  bool isNext(std::string_view call);

  const FaultPlan plan;
  const std::shared_ptr<const Tracer> tracer;
  CallTrace callTrace;
  std::atomic<bool> failsAlways = false;
  std::mutex mutex;
  std::map<std::string, std::int64_t, std::less<>> occurrences;
  struct Coming {
    std::int64_t failing = 0;
    std::int64_t spared = 0;
  };
  /// How many of the next occurrences fail, and of those before them don't.
  std::map<std::string, Coming, std::less<>> failing;
  std::atomic<bool> hasFailing = false;
};

}  // namespace brivane
