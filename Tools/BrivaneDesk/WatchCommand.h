#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace brivane {

/// Prints what a desk's hardware is like, and then every change of it, whichever process makes it,
/// until the process is asked to end. `words` are the desk's file, which may be left out. The exit
/// status: 0, 1 when the desk can't be watched, 2 when there are other words.
int watchDesk(std::vector<std::string> words, std::ostream& out, std::ostream& errors);

}  // namespace brivane
