#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Machines/Desk/DeskDescription.h"

namespace brivane {

/// Makes calls of the Machine seam fail at chosen occurrences. Each call that the plan names is
/// counted from 1, per machine. Any thread.
class Faults {
 public:
  explicit Faults(FaultPlan faultPlan) : plan(std::move(faultPlan)) {}

  /// Counts one occurrence of the call; whether it fails.
  bool strikes(std::string_view call);

  /// The names of all calls that can fail.
  static const std::vector<std::string_view>& calls();

 private:
  const FaultPlan plan;
  std::mutex mutex;
  std::map<std::string, std::int64_t, std::less<>> occurrences;
};

}  // namespace brivane
