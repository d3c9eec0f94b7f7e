#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace brivane {

/// Carries out one step on a desk that other processes may be using: running programs see its
/// effect at once, later ones when they start. `words` are the desk's file (optional) and the step,
/// as one word or several. Prints the changes of the hardware to `out`, and an error, in one line,
/// to `errors`.
///
/// The exit status: 0 when the step was done, 1 when it was impossible on the desk, 2 when the
/// words are no valid step.
int poke(std::vector<std::string> words, std::ostream& out, std::ostream& errors);

}  // namespace brivane
