#pragma once

#include <cstdint>
#include <string>

#include "BrivaneCore/Support/Time.h"

namespace brivane {

/// A scenario of a random desk and a random day, with expectations that hold for every day, and two
/// quiet minutes before its end. An ordinary scenario, so that a failing one can be read, shortened
/// and kept as a test. Lasts for some ten minutes, or for at least `length`: then busy times
/// alternate with quiet ones of up to an hour. A seed and a length give the same text on every
/// machine.
std::string randomDay(std::uint64_t seed, Microseconds length = Microseconds(0));

}  // namespace brivane
