#include "BrivaneApp/RunningInstance.h"

namespace brivane {

std::optional<ProcessID> otherRunningInstance(Applications& applications) {
  const auto identifier = applications.bundleIdentifier();
  if (!identifier) return std::nullopt;
  for (const ProcessID process : applications.runningApplications(*identifier)) {
    if (process != applications.ownProcessID()) return process;
  }
  return std::nullopt;
}

}  // namespace brivane
