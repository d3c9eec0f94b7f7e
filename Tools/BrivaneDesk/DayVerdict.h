#pragma once

#include <optional>
#include <string>

#include "BrivaneCore/Support/Time.h"
#include "Machines/Common/Processes/ChildTasks.h"
#include "Tools/BrivaneDesk/FailureKind.h"
#include "Tools/BrivaneDesk/Stage/Stage.h"

namespace brivane {

/// How a day went. Of several failures the first counts.
struct DayVerdict {
  /// Nothing when all went well.
  std::optional<FailureKind> kind;
  /// What failed: the step, the rule, the signal.
  std::string failure;
  /// Where, and what was found, for people.
  std::string details;
  /// Over all plays; 0 after a crash or a hang.
  Microseconds simulated{0};
  Microseconds processorTime{0};

  /// Whether the same rule or the same expectation is broken.
  bool isLike(const DayVerdict& other) const {
    return kind == other.kind && failure == other.failure;
  }
};

/// Plays the day twice, the second time only when the first went well, and returns the verdict as
/// text for `verdictOf`. Errors name the day `name`.
std::string playDay(const std::string& day, const std::string& name, const StageOptions& options);

/// The verdict of a day whose `playDay` was a task in a child process.
DayVerdict verdictOf(const ChildTaskEnd& child);

}  // namespace brivane
