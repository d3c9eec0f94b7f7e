#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace brivane {

/// Prints the state of a desk's hardware and then every change, by any process, until the process
/// is asked to end. `words` are the desk's file (optional). The exit status: 0, 1 when the desk
/// can't be watched, 2 when there are other words.
int watchDesk(std::vector<std::string> words, std::ostream& out, std::ostream& errors);

}  // namespace brivane
