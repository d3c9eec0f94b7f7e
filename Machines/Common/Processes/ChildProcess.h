#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"

namespace brivane {

/// Runs a program to its end as `ProcessRunner::run` promises. The child gets the default action
/// for every signal: this process may ignore some, and a child would inherit that.
ProcessResult runChildProcess(const std::string& executable,
                              const std::vector<std::string>& arguments);

}  // namespace brivane
