#pragma once

#include <iosfwd>

#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// Prints which displays there are and how each can be driven, as text to be pasted into a request
/// for help. Main thread; blocks for the monitors' answers.
void printProbeReport(Machine& machine, std::ostream& out);

}  // namespace brivane
