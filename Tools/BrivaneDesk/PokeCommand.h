#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace brivane {

/// Does one step to a desk that others may be using: programs that run on it meet it at once, and
/// without any it is there for the next one. `words` are a desk's file, which may be left out, and
/// the step, in one word or in several. Prints what happened to the hardware to `out`, and what was
/// wrong, in one line, to `errors`.
///
/// The exit status: 0 when it was done, 1 when the desk didn't let it happen, 2 when the words say
/// nothing that can be done.
int poke(std::vector<std::string> words, std::ostream& out, std::ostream& errors);

}  // namespace brivane
