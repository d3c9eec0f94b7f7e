#pragma once

#include <iosfwd>

#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// Prints what the program can see and drive: plain text, meant to be pasted into a request for
/// help. Main thread; blocks for what the monitors need.
void printProbeReport(Machine& machine, std::ostream& out);

}  // namespace brivane
