#pragma once

#include <cstdint>
#include <string>

namespace brivane {

/// A scenario of a random desk and a random day, with expectations that hold for every day, and two
/// quiet minutes before its end. An ordinary scenario, so that a failing one can be read, shortened
/// and kept as a test. A seed gives the same text on every machine.
std::string randomDay(std::uint64_t seed);

}  // namespace brivane
