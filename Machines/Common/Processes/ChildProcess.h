#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"

namespace brivane {

/// Runs a program to its end, see `ProcessRunner::run`. The child gets the default action for every
/// signal; it would inherit ignored ones.
ProcessResult runChildProcess(const std::string& executable,
                              const std::vector<std::string>& arguments);

}  // namespace brivane
